#include "ui/catalog/PosterLoader.h"
#include <algorithm>
#include <vector>

namespace vellum::ui {

struct PosterLoader::Request {
  QUrl url;
  int width;
  Done done;
  std::weak_ptr<Queue> queue;
  asio::cancellation_signal stop;
};

// Lives on a worker strand; kept alive by what runs there.
class PosterLoader::Queue final : public std::enable_shared_from_this<Queue> {
public:
  Queue(WorkerStrand queue, FetchData fetch, const Clock& clock)
      : strand(std::move(queue)), m_fetch(std::move(fetch)), m_clock(clock) {}

  void add(const Ticket& ticket) {
    m_waiting.push_back(ticket);
    next();
  }

  void cancel(const Ticket& ticket) {
    if (std::erase(m_waiting, ticket) > 0)
      ticket->done({});
    else
      ticket->stop.emit(asio::cancellation_type::terminal);
  }

  void cancelAll() {
    for (const Ticket& ticket : std::exchange(m_waiting, {})) ticket->done({});
    const std::vector<Ticket> running = m_running; // one may end before emit() returns
    for (const Ticket& ticket : running) ticket->stop.emit(asio::cancellation_type::terminal);
  }

  const WorkerStrand strand;

private:
  void next() {
    while (m_running.size() < kMostAtOnce && !m_waiting.empty()) {
      const Ticket ticket = m_waiting.back();
      m_waiting.pop_back();
      m_running.push_back(ticket);
      auto ended = [self = shared_from_this(), ticket](const std::exception_ptr&, QImage image) {
        std::erase(self->m_running, ticket);
        ticket->done(std::move(image));
        self->next();
      };
      asio::co_spawn(strand, run(m_fetch, ticket, m_clock),
                     asio::bind_cancellation_slot(ticket->stop.slot(), std::move(ended)));
    }
  }

  static Flow<QImage> run(FetchData fetch, Ticket ticket, const Clock& clock) {
    const QByteArray bytes = co_await fetch(ticket->url, kTimeout);
    co_return PosterDecoder::decode(bytes, ticket->width, clock);
  }

  FetchData m_fetch;
  const Clock& m_clock;
  std::vector<Ticket> m_waiting;
  std::vector<Ticket> m_running;
};

PosterLoader::PosterLoader(IoPool& pool, FetchData fetch, const Clock& clock)
    : m_queue(std::make_shared<Queue>(pool.makeWorkerStrand(), std::move(fetch), clock)) {}

PosterLoader::~PosterLoader() {
  asio::post(m_queue->strand, [queue = m_queue] { queue->cancelAll(); });
}

PosterLoader::Ticket PosterLoader::load(const QUrl& url, int width, Done done) {
  auto ticket = std::make_shared<Request>();
  ticket->url = url;
  ticket->width = width;
  ticket->done = std::move(done);
  ticket->queue = m_queue;
  asio::post(m_queue->strand, [queue = m_queue, ticket] { queue->add(ticket); });
  return ticket;
}

void PosterLoader::cancel(const Ticket& ticket) {
  if (const auto queue = ticket->queue.lock())
    asio::post(queue->strand, [queue, ticket] { queue->cancel(ticket); });
}

} // namespace vellum::ui
