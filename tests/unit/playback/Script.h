// A test as lines of what is done and what is seen then.
#pragma once
#include <QStringList>
#include <gtest/gtest.h>

namespace vellum::test {

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// "WORD NUMBER, WORD -> what then() gives": a number is 1 unless it is said; what is behind the
// arrow is only compared where there is one.
template <class Step, class Then>
void runScript(const char* lines, Step step, Then then) {
  for (const QString& line : text(lines).split(u'\n', Qt::SkipEmptyParts)) {
    const QStringList sides = line.split(text("->"));
    for (const QString& each : sides[0].split(u',')) {
      const QStringList words = each.simplified().split(u' ');
      step(words[0], words.size() > 1 ? words[1].toDouble() : 1);
    }
    if (sides.size() > 1) EXPECT_EQ(then(), sides[1].trimmed().toStdString()) << qPrintable(line);
  }
}

} // namespace vellum::test
