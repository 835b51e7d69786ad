// Posters on their way: fetched through the shared cache and decoded on a worker, a few at a time.
#pragma once
#include "base/IoPool.h"
#include "net/FetchData.h"
#include "ui/catalog/PosterDecoder.h"

namespace vellum::ui {

// Any thread. What was asked for last comes first: it is what the user has scrolled to.
class PosterLoader final {
public:
  static constexpr std::size_t kMostAtOnce = 6;
  static constexpr std::chrono::seconds kTimeout{20};
  static constexpr std::int64_t kLargestBody = 8 * 1024 * 1024; // bytes; the fetch holds to it

  // Called once, on a worker, whether it came or not; a picture without size is none.
  using Done = std::function<void(QImage)>;
  struct Request;
  using Ticket = std::shared_ptr<Request>;

  // Pool and clock outlive it.
  PosterLoader(IoPool& pool, FetchData fetch, const Clock& clock);
  // Cancels all; what is on its way ends by itself on the pool.
  ~PosterLoader();
  PosterLoader(const PosterLoader&) = delete;
  PosterLoader& operator=(const PosterLoader&) = delete;

  // `width` is that of the frame in pixels.
  Ticket load(const QUrl& url, int width, Done done);
  static void cancel(const Ticket& ticket); // also after the loader has gone

private:
  class Queue;
  std::shared_ptr<Queue> m_queue;
};

} // namespace vellum::ui
