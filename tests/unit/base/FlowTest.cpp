#include "base/Flow.h"
#include "base/IoPool.h"
#include "base/Resolve.h"
#include "support/RunFlow.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using namespace std::chrono_literals;

struct FlowTest : testing::Test, world::MainThread {};

TEST_F(FlowTest, APoolEndsWhenAllOnItHasEndedAndTheMainThreadWasThereForIt) {
  const auto hop = [](MainLoop& loop, int& count, std::chrono::milliseconds pause) -> Flow<> {
    co_await sleepFor(pause);
    for (int i = 0; i < 3; ++i) co_await asyncOn(loop.executor(), [&count] { return ++count; });
    loop.post([&count] { ++count; });
  };
  for (int round = 0; round < 10; ++round) {
    int count = 0; // on the main thread
    {
      IoPool pool;
      const bool workersEndLast = round % 2 == 0;
      asio::co_spawn(pool.workers(), hop(main, count, workersEndLast ? 9ms : 1ms), asio::detached);
      asio::co_spawn(pool.io(), hop(main, count, workersEndLast ? 1ms : 9ms), asio::detached);
    }
    EXPECT_EQ(count, 8) << round;
  }
}

TEST_F(FlowTest, ALoopRunsAllInOrderAndNothingMoreWhenClosed) {
  std::optional<MainLoop> loop(std::in_place);
  std::string ran;
  loop->post([&] {
    ran += "a";
    loop->post([&] { ran += "c"; });
  });
  loop->post([&] { ran += "b"; });
  turnUntil([&] { return ran.size() == 3; });
  loop->post([&] { ran += "queued"; });
  loop->close();
  loop->post([&] { ran += "late"; });
  QCoreApplication::processEvents();
  EXPECT_EQ(ran, "abc");

  // What is queued at the end goes with the loop, and so does what it posts then.
  const auto last = std::make_shared<bool>();
  loop.emplace();
  loop->post([held = qScopeGuard([&loop, last] { loop->post([last] {}); })] {});
  loop.reset();
  EXPECT_EQ(last.use_count(), 1);
}

TEST_F(FlowTest, HostsAreLookedUpAddressesAreNotAndACancelledLookUpEnds) {
  const auto found = [](const char* host) {
    std::string all;
    for (const auto& address : test::runFlow(resolveHost(QString::fromLatin1(host))))
      all += address.to_string() + ' ';
    return all;
  };
  for (const char* literal : {"::1", "[::1]"}) EXPECT_EQ(found(literal), "::1 ");
  for (const char* name : {"127.1", "localhost"}) // neither is asked of a server
    EXPECT_EQ(found(name).substr(0, 10), "127.0.0.1 ");
  for (int round = 0; round < 50; ++round) {
    FlowGroup flows(main.executor());
    flows.spawn([]() -> Flow<> { co_await resolveHost(QStringLiteral("localhost")); }());
    flows.cancelAll();
    EXPECT_TRUE(turnUntil([&] { return flows.isIdle(); }));
  }
}

} // namespace
} // namespace vellum
