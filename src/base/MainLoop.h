// The Qt main loop as an Asio executor: how coroutines and strands hop to the main thread.
#pragma once
#include <QEvent>
#include <QObject>
#include <QThread>
#include <asio/any_io_executor.hpp>
#include <asio/execution.hpp>
#include <asio/execution_context.hpp>
#include <deque>
#include <memory>
#include <mutex>
#include <type_traits>

namespace vellum {

// Lives on the main thread; post() and the executor may be used from any thread. Work is handed
// over through a queue of its own (Qt only delivers an empty wake-up event), in posting order.
// What is posted after close() is dropped.
class MainLoop final : public QObject, public asio::execution_context {
public:
  MainLoop();
  ~MainLoop() override;
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  bool isCurrentThread() const noexcept { return QThread::currentThread() == m_thread; }

  template <class F>
  void post(F&& work) {
    using Held = std::decay_t<F>;
    enqueue(std::make_unique<Task<Held>>(Held(std::forward<F>(work))));
  }

  // Main thread: destroys what is queued; nothing posted from now on will run.
  void close();

  class Executor {
  public:
    explicit Executor(MainLoop& loop, bool mayRunInline = true) noexcept
        : m_loop(&loop), m_mayRunInline(mayRunInline) {}

    MainLoop& query(asio::execution::context_t) const noexcept { return *m_loop; }
    asio::execution::blocking_t query(asio::execution::blocking_t) const noexcept {
      if (m_mayRunInline) return asio::execution::blocking.possibly;
      return asio::execution::blocking.never;
    }
    Executor require(asio::execution::blocking_t::possibly_t) const noexcept {
      return Executor(*m_loop, true);
    }
    Executor require(asio::execution::blocking_t::never_t) const noexcept {
      return Executor(*m_loop, false);
    }
    static constexpr asio::execution::mapping_t query(asio::execution::mapping_t) noexcept {
      return asio::execution::mapping.thread;
    }
    template <class F>
    void execute(F&& work) const {
      if (m_mayRunInline && m_loop->isCurrentThread()) {
        std::decay_t<F> local(std::forward<F>(work));
        std::move(local)();
      } else {
        m_loop->post(std::forward<F>(work));
      }
    }
    friend bool operator==(const Executor&, const Executor&) noexcept = default;

  private:
    MainLoop* m_loop;
    bool m_mayRunInline;
  };

  Executor executor() noexcept { return Executor(*this); }

protected:
  void customEvent(QEvent* event) override;

private:
  struct AnyTask {
    virtual ~AnyTask() = default;
    virtual void run() = 0;
  };
  template <class F>
  struct Task final : AnyTask {
    explicit Task(F&& f) : work(std::move(f)) {}
    // Moved out first, so that the work may destroy what holds it.
    void run() override {
      F local(std::move(work));
      std::move(local)();
    }
    F work;
  };
  using Queue = std::deque<std::unique_ptr<AnyTask>>;

  void enqueue(std::unique_ptr<AnyTask> task);

  QThread* const m_thread;
  std::mutex m_mutex; // guards m_queue, m_closed, m_waking
  Queue m_queue;
  bool m_closed = false;
  bool m_waking = false;
};

static_assert(asio::execution::is_executor<MainLoop::Executor>::value);

} // namespace vellum
