#include "ui/language/Language.h"
#include "base/Text.h"
#include <QCoreApplication>
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(Language, IsTheFirstOfTheUsersThatThereAreTextsIn) {
  int argc = 1;
  char name[] = "language";
  char* argv[] = {name, nullptr};
  for (const auto& [asked, word, files, size] :
       {std::tuple{"de-AT,en", "Einstellungen", "1 Datei", "1,25 GB"},
        {"fr-FR,fr,de", "Einstellungen", "1 Datei", "1,25 GB"},
        {"en-GB,en,de", "Settings", "1 file(s)", "1.25 GB"},
        {"C,de", "Settings", "1 file(s)", "1.25 GB"}}) {
    QCoreApplication app(argc, argv);
    speak(app, QString::fromLatin1(asked).split(u','));
    const auto said = [](const char* context, const char* text, int n = -1) {
      return QCoreApplication::translate(context, text, nullptr, n).toStdString();
    };
    EXPECT_EQ(said("vellum::ui::WindowModel", "Settings"), word) << asked;
    EXPECT_EQ(said("vellum::ui::InspectorModel", "%n file(s)", 1), files) << asked;
    EXPECT_EQ(formatByteCount(1'250'000'000).toStdString(), size) << asked;
  }
}

} // namespace
} // namespace vellum
