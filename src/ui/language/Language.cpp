#include "ui/language/Language.h"
#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace vellum {

namespace {

bool install(QCoreApplication& app, const QLocale& language, const char* name,
             const QString& folder) {
  auto* texts = new QTranslator(&app);
  return texts->load(language, QLatin1String(name), QStringLiteral("_"), folder) &&
         QCoreApplication::installTranslator(texts);
}

} // namespace

void speak(QCoreApplication& app, const QStringList& languages) {
  for (const QString& name : languages) {
    const QLocale language(name);
    // Who asks for English before another language shall not get the other one.
    if (language.language() == QLocale::English || language.language() == QLocale::C) return;
    if (!install(app, language, "vellum", QStringLiteral(":/i18n"))) continue;
    // Qt's own sentences, where they are installed.
    for (const char* part : {"qtbase", "qtdeclarative"})
      install(app, language, part, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    return;
  }
}

} // namespace vellum
