#include "selftest/SelfTests.h"
#include "app/StopSignals.h"
#include "selftest/Sections.h"
#include <QCoreApplication>
#include <array>

namespace vellum {

namespace {

using namespace selftest;

struct Section {
  const char* name;
  Flow<> (*run)(CheckList& checks, Runtime& runtime);
};

template <void (*section)(CheckList&)>
Flow<> atOnce(CheckList& checks, Runtime&) {
  section(checks);
  co_return;
}

constexpr std::array kSections{
    Section{"urlValidation", atOnce<urlValidation>},
    Section{"classification", atOnce<classification>},
    Section{"failover", failover},
    Section{"providerDownOthersSucceed", providerDownOthersSucceed},
    Section{"fileSelector", atOnce<fileSelector>},
    Section{"qualityFallback", atOnce<qualityFallback>},
    Section{"streamBuffer", atOnce<streamBuffer>},
    Section{"engineEndToEnd", engineEndToEnd},
};

// What nobody expected counts as a failure, and the next section begins.
Flow<> run(const Section& section, CheckList& checks, Runtime& runtime) {
  try {
    co_await section.run(checks, runtime);
  } catch (const std::exception& error) {
    if (isCancellation(error)) throw;
    checks.check(false, text(section.name), QString::fromUtf8(error.what()));
  }
}

Flow<> runAll(CheckList& checks, Runtime& runtime) {
  int code = 1;
  try {
    for (const Section& section : kSections) co_await run(section, checks, runtime);
    code = checks.finish();
  } catch (const asio::system_error&) {
    // A signal ends the run; what the section had made is gone by now.
  }
  QCoreApplication::exit(code);
}

} // namespace

int runSelfTests(Runtime& runtime) {
  CheckList checks;
  FlowGroup flows(runtime.main.executor());
  const StopSignals signals(runtime, [group = flows]() mutable { group.cancelAll(); });
  // From within the main loop: a loop that has not begun cannot be ended.
  runtime.main.post([&] { flows.spawn(runAll(checks, runtime)); });
  return QCoreApplication::exec();
}

} // namespace vellum
