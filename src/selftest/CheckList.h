// The count of a self-test run, and its lines on standard output.
#pragma once
#include <QString>

namespace vellum::selftest {

class CheckList {
public:
  // "PASS  name", or "FAIL  name — detail".
  void check(bool passed, const QString& name, const QString& detail = {});
  // The last line; 0 if nothing failed and every line could be written, else 1.
  int finish() const;

private:
  int m_failed = 0;
};

} // namespace vellum::selftest
