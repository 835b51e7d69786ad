#include "base/Flow.h"
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "base/Resolve.h"
#include "world/MainThread.h"
#include <QCoreApplication>
#include <gtest/gtest.h>

namespace vellum {
namespace {

using namespace world;

using namespace std::chrono_literals;

struct FlowTest : testing::Test, world::MainThread {};

TEST_F(FlowTest, HopsToAStrandAndBackToTheMainThread) {
  IoPool pool;
  FlowGroup flows(main.executor());
  bool done = false;
  bool stayedOnMain = true;
  int counter = 0; // touched on the strand only
  const Strand strand = pool.makeStrand();
  flows.spawn([](MainLoop& loop, Strand s, int& n, bool& onMain, bool& end) -> Flow<> {
    for (int i = 0; i < 100; ++i) {
      const int seen = co_await asyncOn(s, [&n] { return ++n; });
      onMain = onMain && loop.isCurrentThread() && seen == i + 1;
    }
    end = true;
  }(main, strand, counter, stayedOnMain, done));
  turnUntil([&] { return done; });
  EXPECT_TRUE(stayedOnMain);
  EXPECT_EQ(syncOn(strand, [&] { return counter; }), 100);
}

TEST_F(FlowTest, AFlowOnAStrandGivesItsResultItsErrorOrItsCancellation) {
  enum class Way { Result, Error, Cancelled };
  for (const Way way : {Way::Result, Way::Error, Way::Cancelled}) {
    IoPool pool;
    FlowGroup flows(main.executor());
    std::atomic<bool> isThere = false;
    std::string said;
    const auto there = [](Way how, std::atomic<bool>& begun,
                          const MainLoop& loop) -> Flow<std::string> {
      begun = !loop.isCurrentThread();
      if (how == Way::Error) throw std::runtime_error("error");
      if (how == Way::Cancelled) co_await sleepFor(1h);
      co_return "result";
    };
    flows.spawn([](Flow<std::string> flow, WorkerStrand strand, std::string& out) -> Flow<> {
      try {
        out = co_await flowOn(strand, std::move(flow));
      } catch (const std::exception& error) {
        out = isCancellation(error) ? "cancelled" : error.what();
      }
    }(there(way, isThere, main), pool.makeWorkerStrand(), said));
    turnUntil([&] { return isThere.load(); });
    if (way == Way::Cancelled) flows.cancelAll();
    turnUntil([&] { return !said.empty(); });
    EXPECT_EQ(said, way == Way::Result ? "result" : way == Way::Error ? "error" : "cancelled");
  }
}

TEST_F(FlowTest, APoolEndsInOrderWhileItsWorkersStillNeedTheMainThread) {
  for (int round = 0; round < 50; ++round) {
    FlowGroup flows(main.executor());
    int hops = 0;
    {
      IoPool pool;
      const auto hop = [](MainLoop& loop, int& count) -> Flow<int> {
        for (int i = 0; i < 3; ++i) co_await asyncOn(loop.executor(), [&count] { return ++count; });
        co_return count;
      };
      flows.spawn([](Flow<int> flow, WorkerStrand strand) -> Flow<> {
        co_await flowOn(strand, std::move(flow));
      }(hop(main, hops), pool.makeWorkerStrand()));
      if (round % 2 == 0) QCoreApplication::processEvents();
    }
    EXPECT_TRUE(flows.isIdle() || hops == 0);
  }
}

TEST_F(FlowTest, AGroupCancelsWhatSleepsAndThePoolThenEndsAtOnce) {
  bool cancelled = false;
  {
    IoPool pool;
    const Strand strand = pool.makeStrand();
    FlowGroup flows(strand);
    syncOn(strand, [&] {
      flows.spawn([](bool& flag) -> Flow<> {
        try {
          co_await sleepFor(1h);
        } catch (const asio::system_error& error) {
          flag = error.code() == asio::error::operation_aborted;
        }
      }(cancelled));
    });
    asio::post(strand, [flows]() mutable { flows.cancelAll(); });
  }
  EXPECT_TRUE(cancelled);
}

TEST_F(FlowTest, LiteralAddressesAreNotLookedUp) {
  IoPool pool;
  FlowGroup flows(main.executor());
  bool done = false;
  std::vector<std::string> found;
  flows.spawn([](std::vector<std::string>& out, bool& end) -> Flow<> {
    for (const char* host : {"127.0.0.1", "::1", "[::1]"})
      for (const auto& address : co_await resolveHost(QString::fromLatin1(host)))
        out.push_back(address.to_string());
    end = true;
  }(found, done));
  turnUntil([&] { return done; });
  EXPECT_EQ(found, (std::vector<std::string>{"127.0.0.1", "::1", "::1"}));
}

} // namespace
} // namespace vellum
