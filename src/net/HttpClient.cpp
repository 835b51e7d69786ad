#include "net/HttpClient.h"
#include "net/ContentCoding.h"
#include "net/Download.h"
#include <QDir>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QPointer>
#include <QUuid>

namespace vellum {

namespace {

bool isFetchable(const QUrl& url) {
  const QString scheme = url.scheme();
  const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
  return url.isValid() && isWeb && !url.host().isEmpty();
}

} // namespace

struct HttpClient::Ask {
  QUrl url;
  std::chrono::milliseconds timeout;
  std::int64_t maxBytes = kLargestBody;
  QByteArray range = {};  // empty for all of it
  bool anyStatus = false; // else only 200 to 299 is an answer
};

// The network stack and its cache. Main thread only.
class HttpClient::Requests {
public:
  Requests() = default;
  ~Requests() {
    if (!m_manager) return;
    const auto replies = m_manager->findChildren<QNetworkReply*>(Qt::FindDirectChildrenOnly);
    for (const QNetworkReply* reply : replies)
      for (QObject* child : reply->children())
        if (auto* download = dynamic_cast<Download*>(child)) download->abort();
  }
  Requests(const Requests&) = delete;
  Requests& operator=(const Requests&) = delete;

  QPointer<Download> start(const Ask& ask, Download::Finished finished) {
    QNetworkRequest request(ask.url);
    if (!ask.range.isEmpty()) request.setRawHeader("Range", ask.range);
    request.setRawHeader("User-Agent", "VellumApp/1.0 (macOS)");
    // Named by us, so that Qt leaves the body packed: it would unpack all of it at once, here.
    request.setRawHeader("Accept-Encoding", kAcceptedCoding);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    return new Download(*manager().get(request), ask.timeout, ask.maxBytes, std::move(finished));
  }

  void setCacheDirectory(const QString& directory) {
    m_cacheDirectory = directory;
    if (m_manager) useCache();
  }

  QString clearCache() {
    if (m_cacheDirectory.isEmpty()) return {};
    const QDir cache(m_cacheDirectory);
    const QString aside = cache.filePath(QStringLiteral("cleared"));
    QDir().mkpath(aside);
    for (const QString& kept : cache.entryList({QStringLiteral("data*")}, QDir::Dirs))
      QDir().rename(cache.filePath(kept),
                    aside + u'/' + QUuid::createUuid().toString(QUuid::Id128));
    if (m_cache) useCache(); // which makes its folders anew
    return aside;
  }

private:
  QNetworkAccessManager& manager() {
    if (!m_manager) {
      m_manager = std::make_unique<QNetworkAccessManager>();
      if (!m_cacheDirectory.isEmpty()) useCache();
    }
    return *m_manager;
  }

  // Requests under way write to the cache that they began with: there is one, and it moves.
  void useCache() {
    const bool isNew = !m_cache;
    if (isNew) m_cache = new QNetworkDiskCache; // the manager takes it
    m_cache->setCacheDirectory(m_cacheDirectory);
    if (!isNew) return;
    m_cache->setMaximumCacheSize(kDiskCacheSize);
    m_manager->setCache(m_cache);
  }

  QString m_cacheDirectory;
  QNetworkDiskCache* m_cache = nullptr;
  std::unique_ptr<QNetworkAccessManager> m_manager;
};

// The awaiting side of a fetch. The handler belongs to the awaiting coroutine's executor: the main
// thread only ever posts to that, and a cancellation, which comes on that executor, only ever posts
// to the main thread. Once made, its members are touched on the main thread alone.
template <class Handler>
struct HttpClient::Waiting {
  explicit Waiting(Handler h) : handler(std::move(h)) {}

  void complete(asio::error_code error, Download::Outcome outcome) {
    if (!handler) return;
    Handler taken = std::move(*handler);
    handler.reset();
    const auto executor = asio::get_associated_executor(taken);
    asio::post(executor, [taken = std::move(taken), error, outcome = std::move(outcome)]() mutable {
      std::move(taken)(error, std::move(outcome));
    });
  }
  void cancel() {
    complete(asio::error::operation_aborted, {});
    if (download) download->abort();
  }

  std::optional<Handler> handler; // nothing once completed
  QPointer<Download> download;
};

Flow<HttpResponse> HttpClient::request(MainLoop& main, std::weak_ptr<Requests> requests, Ask ask) {
  if (!isFetchable(ask.url)) throw NetError::badURL();
  auto initiate = [&](auto handler) {
    const auto slot = asio::get_associated_cancellation_slot(handler);
    const auto waiting = std::make_shared<Waiting<decltype(handler)>>(std::move(handler));
    if (slot.is_connected())
      asio::cancellation_slot(slot).assign(
          [&main, late = std::weak_ptr(waiting)](asio::cancellation_type) {
            main.post([late] {
              if (const auto held = late.lock()) held->cancel();
            });
          });
    main.post([waiting, requests, ask] {
      const auto alive = requests.lock();
      if (!alive)
        waiting->complete(asio::error::operation_aborted, {});
      else if (waiting->handler) // else it was cancelled before it began
        waiting->download = alive->start(ask, [waiting](Download::Outcome outcome) {
          waiting->complete(outcome.wasAborted ? asio::error_code(asio::error::operation_aborted)
                                               : asio::error_code(),
                            std::move(outcome));
        });
    });
  };
  Download::Outcome outcome =
      co_await asio::async_initiate<const asio::use_awaitable_t<>&,
                                    void(asio::error_code, Download::Outcome)>(initiate,
                                                                               asio::use_awaitable);
  if (outcome.error) throw NetError(*outcome.error);
  HttpResponse& response = outcome.response;
  const bool isGood = response.status >= 200 && response.status <= 299;
  if (!isGood && !ask.anyStatus) throw NetError::http(response.status);
  response.body = unpacked(std::move(response.body), outcome.coding, ask.maxBytes);
  co_return std::move(response);
}

Flow<QByteArray> HttpClient::fetch(MainLoop& main, std::weak_ptr<Requests> requests, QUrl url,
                                   std::chrono::milliseconds timeout, std::int64_t maxBytes) {
  HttpResponse response =
      co_await request(main, std::move(requests), Ask{std::move(url), timeout, maxBytes});
  co_return std::move(response.body);
}

HttpClient::HttpClient(MainLoop& main) : m_main(main), m_requests(std::make_shared<Requests>()) {}

HttpClient::~HttpClient() = default;

Flow<QByteArray> HttpClient::fetchData(QUrl url, std::chrono::milliseconds timeout,
                                       std::int64_t maxBytes) {
  return fetch(m_main, m_requests, std::move(url), timeout, maxBytes);
}

FetchData HttpClient::fetcher(std::int64_t maxBytes) {
  return [&main = m_main, requests = std::weak_ptr(m_requests),
          maxBytes](QUrl url, std::chrono::milliseconds timeout) {
    return fetch(main, requests, std::move(url), timeout, maxBytes);
  };
}

Transport HttpClient::transport(std::chrono::milliseconds timeout, const QByteArray& range) {
  return [&main = m_main, requests = std::weak_ptr(m_requests), timeout, range](QUrl url) {
    return request(main, requests, Ask{std::move(url), timeout, kLargestBody, range, true});
  };
}

void HttpClient::setCacheDirectory(const QString& directory) {
  m_requests->setCacheDirectory(directory);
}

QString HttpClient::clearCache() { return m_requests->clearCache(); }

} // namespace vellum
