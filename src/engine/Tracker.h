// One announce to one tracker. Every way of failing gives nothing.
#pragma once
#include "base/Flow.h"
#include "base/Random.h"
#include "engine/TrackerWire.h"
#include "net/FetchData.h"

namespace vellum {

// Stateless; each call is one independent attempt and runs on the executor of its caller.
// Cancellable; a cancelled announce gives nothing or throws asio::system_error.
struct Tracker {
  // By the scheme of the address: http and https, udp; anything else gives nothing.
  static Flow<std::optional<TrackerResult>> announce(QString url, AnnounceRequest request,
                                                     Random& random, FetchData fetch);

  // BEP 15, no retries: at most 6 s for the connect step and 6 s for the announce.
  static Flow<std::optional<TrackerResult>> udp(QUrl url, AnnounceRequest request, Random& random);
  // At most 8 s.
  static Flow<std::optional<TrackerResult>> http(QString url, AnnounceRequest request,
                                                 FetchData fetch);
};

} // namespace vellum
