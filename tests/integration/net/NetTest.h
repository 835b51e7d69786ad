// What the tests of the HTTP client share: a main loop that turns, a pool, and awaited answers.
#pragma once
#include "base/IoPool.h"
#include "net/HttpClient.h"
#include "world/MainThread.h"
#include "world/ScriptedServer.h"
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;

using namespace std::chrono_literals;

// How one fetch ended.
struct Ending {
  QByteArray body;
  QString error; // of a NetError
  int status = 0;
  asio::error_code code; // of a cancellation
  bool isOnItsStrand = false;
};

struct NetTest : testing::Test, world::MainThread {
  // Runs on the strand, never on the main thread.
  static Flow<> await(Flow<QByteArray> fetch, Strand strand, std::promise<Ending>& promise) {
    Ending ending;
    try {
      ending.body = co_await std::move(fetch);
    } catch (const NetError& error) {
      ending.error = error.errorDescription();
      ending.status = error.status();
    } catch (const asio::system_error& error) {
      ending.code = error.code();
    }
    ending.isOnItsStrand = strand.running_in_this_thread();
    promise.set_value(std::move(ending));
  }

  void start(Flow<QByteArray> fetch, std::promise<Ending>& promise) {
    syncOn(strand, [&] { flows.spawn(await(std::move(fetch), strand, promise)); });
  }

  static Ending ending(std::promise<Ending>& promise) {
    auto future = promise.get_future();
    if (!turnUntil([&] { return future.wait_for(0s) == std::future_status::ready; }))
      throw std::runtime_error("the fetch never ended");
    Ending result = future.get();
    EXPECT_TRUE(result.isOnItsStrand);
    return result;
  }

  Ending get(const QUrl& url, std::chrono::milliseconds timeout = 8s,
             std::int64_t maxBytes = HttpClient::kLargestBody) {
    std::promise<Ending> promise;
    start(client->fetchData(url, timeout, maxBytes), promise);
    return ending(promise);
  }

  IoPool pool;
  Strand strand = pool.makeStrand();
  FlowGroup flows{strand};
  std::optional<HttpClient> client{std::in_place, main};
};

} // namespace vellum::test
