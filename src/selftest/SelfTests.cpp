#include "selftest/SelfTests.h"
#include "selftest/Sections.h"
#include <QCoreApplication>

namespace vellum {

namespace {

using namespace selftest;

// What nobody expected counts as a failure, and the next section begins.
template <class Section>
Flow<> run(CheckList& checks, Runtime& runtime, const char* name, Section section) {
  try {
    co_await section(checks, runtime);
  } catch (const std::exception& error) {
    checks.check(false, QString::fromLatin1(name), QString::fromUtf8(error.what()));
  }
}

Flow<> runAll(CheckList& checks, Runtime& runtime) {
  urlValidation(checks);
  classification(checks);
  co_await run(checks, runtime, "failover", failover);
  co_await run(checks, runtime, "providerDownOthersSucceed", providerDownOthersSucceed);
  fileSelector(checks);
  qualityFallback(checks);
  streamBuffer(checks);
  co_await run(checks, runtime, "engineEndToEnd", engineEndToEnd);
  QCoreApplication::exit(checks.finish());
}

} // namespace

int runSelfTests(Runtime& runtime) {
  CheckList checks;
  FlowGroup flows(runtime.main.executor());
  // From within the main loop: a loop that has not begun cannot be ended.
  runtime.main.post([&] { flows.spawn(runAll(checks, runtime)); });
  return QCoreApplication::exec();
}

} // namespace vellum
