// Coroutines: their type, their owner, and the ways from one queue to another.
#pragma once
#include <asio/any_io_executor.hpp>
#include <asio/awaitable.hpp>
#include <asio/bind_cancellation_slot.hpp>
#include <asio/cancellation_signal.hpp>
#include <asio/co_spawn.hpp>
#include <asio/dispatch.hpp>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/packaged_task.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <asio/strand.hpp>
#include <asio/thread_pool.hpp>
#include <asio/use_awaitable.hpp>
#include <atomic>
#include <exception>
#include <functional>
#include <future>
#include <list>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace vellum {

template <class T = void>
using Flow = asio::awaitable<T>;
using Strand = asio::strand<asio::io_context::executor_type>;
using WorkerStrand = asio::strand<asio::thread_pool::executor_type>;

// The owner of running coroutines on one executor. spawn() and cancelAll() are called on that
// executor only. A coroutine that ends by an exception ends quietly: who must tell of a failure
// catches it inside. The group may go before its coroutines have ended; it does not cancel them.
class FlowGroup {
public:
  explicit FlowGroup(asio::any_io_executor executor)
      : m_state(std::make_shared<State>(std::move(executor))) {}

  void spawn(Flow<> flow) {
    const auto node = m_state->nodes.emplace(m_state->nodes.end());
    asio::co_spawn(m_state->executor, std::move(flow),
                   asio::bind_cancellation_slot(node->slot(),
                                                [state = m_state, node](const std::exception_ptr&) {
                                                  state->nodes.erase(node);
                                                }));
  }

  void cancelAll() {
    auto& nodes = m_state->nodes;
    // A handler may end its coroutine, and so erase its node, before emit() returns.
    for (auto next = nodes.begin(); next != nodes.end();)
      (next++)->emit(asio::cancellation_type::terminal);
  }

  bool isIdle() const { return m_state->nodes.empty(); }

private:
  struct State {
    explicit State(asio::any_io_executor e) : executor(std::move(e)) {}
    asio::any_io_executor executor;
    std::list<asio::cancellation_signal> nodes;
  };
  std::shared_ptr<State> m_state;
};

// Runs f on `executor` and waits for its result. Main thread only, never from a strand or a pool
// thread: two of those waiting for each other would never end.
template <class Executor, class F>
auto syncOn(const Executor& executor, F f) {
  using Result = std::invoke_result_t<F&>;
  // Asio takes a packaged task as a completion token and gives its future.
  return asio::dispatch(executor, std::packaged_task<Result()>(std::move(f))).get();
}

// The meeting point of asyncOn: whoever comes second, result or waiter, finds the other.
template <class Result>
class Hop {
public:
  bool isDone() const { return m_state.load(std::memory_order_acquire) == State::Done; }
  void finish(Result result) {
    m_result.emplace(std::move(result));
    if (m_state.exchange(State::Done) == State::Waiting) m_resume();
  }
  template <class Handler>
  void wait(Handler handler) {
    auto held = std::make_shared<Handler>(std::move(handler));
    m_resume = [held] { asio::post(std::move(*held)); };
    if (m_state.exchange(State::Waiting) == State::Done) m_resume();
  }
  Result take() { return std::move(*m_result); }

private:
  enum class State { Empty, Waiting, Done };
  std::atomic<State> m_state = State::Empty;
  std::optional<Result> m_result;
  std::function<void()> m_resume;
};

// Runs f (which must not throw) on `executor`; the awaiting coroutine goes on where it was, and
// without a pause when the executor was free to run f at once. It cannot be cancelled on the way:
// f is expected to be short.
template <class Executor, class F>
auto asyncOn(Executor executor, F f) -> Flow<std::invoke_result_t<F&>> {
  using Result = std::invoke_result_t<F&>;
  const auto hop = std::make_shared<Hop<Result>>();
  asio::dispatch(executor, [hop, f = std::move(f)]() mutable { hop->finish(f()); });
  if (!hop->isDone())
    co_await asio::async_initiate<const asio::use_awaitable_t<>&, void()>(
        [hop](auto handler) { hop->wait(std::move(handler)); }, asio::use_awaitable);
  co_return hop->take();
}

// Runs a flow on `executor`, one that runs one thing at a time (a strand, or main); the awaiting
// coroutine goes on where it was with the flow's result or exception. When the awaiting coroutine
// is cancelled, the flow is, and its end is still waited for.
template <class Executor, class T>
Flow<T> flowOn(Executor executor, Flow<T> flow) {
  auto initiate = [&](auto handler) {
    // Emitted and connected on `executor` alone.
    const auto stop = std::make_shared<asio::cancellation_signal>();
    const auto slot = asio::get_associated_cancellation_slot(handler);
    if (slot.is_connected())
      asio::cancellation_slot(slot).assign(
          [executor, late = std::weak_ptr(stop)](asio::cancellation_type type) {
            asio::post(executor, [late, type] {
              if (const auto held = late.lock()) held->emit(type);
            });
          });
    auto finished = [stop, handler = std::move(handler)](const std::exception_ptr& error,
                                                         T result) mutable {
      const auto back = asio::get_associated_executor(handler);
      asio::post(back, [handler = std::move(handler), error, result = std::move(result)]() mutable {
        std::move(handler)(error, std::move(result));
      });
    };
    asio::co_spawn(executor, std::move(flow),
                   asio::bind_cancellation_slot(stop->slot(), std::move(finished)));
  };
  co_return co_await asio::async_initiate<const asio::use_awaitable_t<>&,
                                          void(std::exception_ptr, T)>(initiate,
                                                                       asio::use_awaitable);
}

// Whether an exception says that the coroutine was cancelled.
inline bool isCancellation(const std::exception& error) {
  const auto* system = dynamic_cast<const asio::system_error*>(&error);
  return system != nullptr && system->code() == asio::error::operation_aborted;
}

// Waits on the coroutine's own executor; throws asio::system_error when cancelled.
template <class Duration>
Flow<> sleepFor(Duration duration) {
  asio::steady_timer timer(co_await asio::this_coro::executor);
  timer.expires_after(std::chrono::duration_cast<std::chrono::steady_clock::duration>(duration));
  co_await timer.async_wait(asio::use_awaitable);
}

} // namespace vellum
