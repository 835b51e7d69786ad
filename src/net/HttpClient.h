// Requests over HTTP, and the shared disk cache under them.
#pragma once
#include "base/Bytes.h"
#include "base/MainLoop.h"
#include "net/FetchData.h"
#include "net/NetError.h"
#include "net/Transport.h"
#include <QString>
#include <memory>

namespace vellum {

// Lives on the main thread; what it gives may be awaited on any executor, where packed answers are
// also unpacked: keep large ones off the main thread. The network stack is only built at the first
// fetch: most starts need none. Qt caches on disk alone, so the cache has no part in memory.
class HttpClient {
public:
  static constexpr std::int64_t kDiskCacheSize = 300 * kMiB;
  static constexpr std::int64_t kLargestBody = 32 * kMiB;
  static constexpr std::chrono::seconds kTransportTimeout{10};

  // The loop outlives the client and every fetch.
  explicit HttpClient(MainLoop& main);
  // Fetches under way, and those awaited later, fail as cancelled.
  ~HttpClient();
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;

  // GET of an http or https address, redirects followed unless they are less safe; the body, maybe
  // empty, at a status of 200 to 299. `timeout` bounds the whole. Throws NetError, and
  // asio::system_error when the awaiting coroutine is cancelled or the client is gone.
  Flow<QByteArray> fetchData(QUrl url, std::chrono::milliseconds timeout,
                             std::int64_t maxBytes = kLargestBody);
  // The same, to be handed on; it may outlive the client.
  FetchData fetcher(std::int64_t maxBytes = kLargestBody);
  // Requests to providers: the answer whatever its status, of no more than kLargestBody. It may
  // outlive the client. `range`, if any, is sent as the Range header.
  Transport transport(std::chrono::milliseconds timeout = kTransportTimeout,
                      const QByteArray& range = {});

  // Main thread: where answers are kept from now on. Until the first call nowhere.
  void setCacheDirectory(const QString& directory);
  // Main thread: forgets every answer that is kept. Their files are moved aside, into the folder
  // returned, which the caller removes where it may take its time; an empty path for none.
  QString clearCache();

private:
  class Requests;
  struct Ask;
  template <class Handler>
  struct Waiting;
  static Flow<HttpResponse> request(MainLoop& main, std::weak_ptr<Requests> requests, Ask ask);
  static Flow<QByteArray> fetch(MainLoop& main, std::weak_ptr<Requests> requests, QUrl url,
                                std::chrono::milliseconds timeout, std::int64_t maxBytes);

  MainLoop& m_main;
  std::shared_ptr<Requests> m_requests; // locked on the main thread only
};

} // namespace vellum
