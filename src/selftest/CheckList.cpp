#include "selftest/CheckList.h"
#include <cstdio>

namespace vellum::selftest {

namespace {
void print(const QString& line) {
  std::printf("%s\n", qUtf8Printable(line));
  std::fflush(stdout);
}
} // namespace

void CheckList::check(bool passed, const QString& name, const QString& detail) {
  if (passed) return print(QStringLiteral("PASS  ") + name);
  ++m_failed;
  print(QStringLiteral("FAIL  ") + name +
        (detail.isEmpty() ? QString() : QStringLiteral(" — ") + detail));
}

int CheckList::finish() const {
  print(m_failed == 0 ? QStringLiteral("ALL TESTS PASSED")
                      : QStringLiteral("%1 TEST(S) FAILED").arg(m_failed));
  return m_failed == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}

} // namespace vellum::selftest
