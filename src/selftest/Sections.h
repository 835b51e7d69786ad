// The sections of the self-test, each for one subsystem.
#pragma once
#include "app/Runtime.h"
#include "base/Wakeup.h"
#include "selftest/CheckList.h"

namespace vellum::selftest {

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// All on the main thread. A section makes and clears away its own fixtures.
void urlValidation(CheckList& checks);
void classification(CheckList& checks);
void fileSelector(CheckList& checks);
void qualityFallback(CheckList& checks);
void streamBuffer(CheckList& checks);

// These await answers. Nothing of the user's is read or written.
Flow<> failover(CheckList& checks, Runtime& runtime);
Flow<> providerDownOthersSucceed(CheckList& checks, Runtime& runtime);
Flow<> engineEndToEnd(CheckList& checks, Runtime& runtime);

// Asks every 100 ms, at most `times`, whether `holds`; whether it came to hold.
template <class Condition>
Flow<bool> poll(Runtime& runtime, int times, Condition holds) {
  Wakeup wakeup(runtime.pool.io());
  for (int i = 0; i < times; ++i) {
    if (holds()) co_return true;
    co_await wakeup.wait(std::chrono::milliseconds(100));
  }
  co_return holds();
}

} // namespace vellum::selftest
