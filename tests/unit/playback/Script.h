// A test as lines of what is done and what is seen then.
#pragma once
#include <QStringList>
#include <gtest/gtest.h>

namespace vellum::test {

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct Scripted {
  virtual ~Scripted() = default;
  virtual void step(const QString& word, double number) = 0;
  virtual std::string then() = 0; // what happened since it was last asked, and what is shown

  // "WORD NUMBER, WORD -> what then() gives": a number is 1 unless it is said; "*" is anything.
  void script(const char* lines) {
    for (const QString& line : text(lines).split(u'\n', Qt::SkipEmptyParts)) {
      const QStringList sides = line.split(text("->"));
      for (const QString& each : sides[0].split(u',')) {
        const QStringList words = each.simplified().split(u' ');
        step(words[0], words.size() > 1 ? words[1].toDouble() : 1);
      }
      const std::string wanted = sides.value(1, text("*")).trimmed().toStdString();
      const std::string seen = sides.size() > 1 ? then() : wanted;
      if (wanted != "*") EXPECT_EQ(seen, wanted) << qPrintable(line);
    }
  }
};

} // namespace vellum::test
