#include "streaming/LocalStreamServer.h"
#include "base/IoPool.h"
#include "streaming/StreamConnection.h"
#include <asio/experimental/as_tuple.hpp>
#include <map>
#include <mutex>

namespace vellum {

namespace {

using asio::ip::tcp;

constexpr std::chrono::milliseconds kAcceptPause{100}; // after a failed accept

// The last component of a path as it stands in a URL; it only helps a player to guess the type.
QByteArray encodedName(const QString& name) {
  const QString last = name.section(u'/', -1, -1, QString::SectionSkipEmpty);
  const bool isUsable = !last.isEmpty() && last.isValidUtf16() && last != u"." && last != u"..";
  return isUsable ? QUrl::toPercentEncoding(last, "!$&'()*+,:=@") : QByteArray("video");
}

} // namespace

// Listener and connections; on the strand, but for the map of sources.
class LocalStreamServer::Listener : public std::enable_shared_from_this<Listener> {
public:
  explicit Listener(IoPool& pool)
      : m_strand(pool.makeStrand()), m_acceptor(m_strand), m_flows(m_strand) {}

  const Strand& strand() const { return m_strand; }

  // The port that is listened on; 0 if that cannot be. A failed start is tried anew by the next.
  std::uint16_t ensureStarted() {
    if (m_stopped || m_acceptor.is_open()) return m_port;
    asio::error_code error;
    m_acceptor.open(tcp::v4(), error);
    if (!error) m_acceptor.bind({asio::ip::address_v4::loopback(), 0}, error);
    if (!error) m_acceptor.listen(tcp::acceptor::max_listen_connections, error);
    if (!error) m_port = m_acceptor.local_endpoint(error).port();
    if (error) {
      asio::error_code ignored;
      m_acceptor.close(ignored);
      return m_port = 0;
    }
    m_flows.spawn(acceptAll(shared_from_this()));
    return m_port;
  }

  void stop() {
    m_stopped = true;
    m_port = 0;
    asio::error_code ignored;
    m_acceptor.close(ignored);
    m_flows.cancelAll();
  }

  void add(std::shared_ptr<StreamSource> source) {
    const std::lock_guard lock(m_mutex);
    m_sources[source->key().toStdString()] = source;
  }
  void remove(const QString& key) {
    const std::lock_guard lock(m_mutex);
    m_sources.erase(key.toStdString());
  }

private:
  static Flow<> acceptAll(std::shared_ptr<Listener> self) {
    while (!self->m_stopped) {
      auto [error, socket] =
          co_await self->m_acceptor.async_accept(asio::experimental::as_tuple(asio::use_awaitable));
      if (error) {
        // Without descriptors every accept fails at once: that must neither end this nor spin.
        co_await sleepFor(kAcceptPause);
        continue;
      }
      if (self->m_stopped) // between the accept and this turn of the strand
        co_return;
      asio::error_code ignored;
      socket.set_option(tcp::no_delay(true), ignored);
      self->m_flows.spawn(serve(self, std::move(socket)));
    }
  }

  static Flow<> serve(std::shared_ptr<Listener> self, tcp::socket socket) {
    StreamConnection connection(std::move(socket),
                                [self](const std::string& key) { return self->find(key); });
    co_await connection.run();
  }

  std::shared_ptr<StreamSource> find(const std::string& key) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_sources.find(key);
    return found != m_sources.end() ? found->second : nullptr;
  }

  Strand m_strand;
  tcp::acceptor m_acceptor;
  FlowGroup m_flows;
  std::uint16_t m_port = 0;
  bool m_stopped = false;
  std::mutex m_mutex; // guards m_sources
  std::map<std::string, std::shared_ptr<StreamSource>> m_sources;
};

LocalStreamServer::LocalStreamServer(IoPool& pool) : m_listener(std::make_shared<Listener>(pool)) {}

LocalStreamServer::~LocalStreamServer() {
  asio::post(m_listener->strand(), [listener = m_listener] { listener->stop(); });
}

Flow<std::optional<QUrl>> LocalStreamServer::url(std::shared_ptr<StreamSource> source, int file,
                                                 QString name) {
  const auto listener = m_listener;
  const std::uint16_t port =
      co_await asyncOn(listener->strand(), [listener] { return listener->ensureStarted(); });
  if (port == 0) co_return std::nullopt;
  listener->add(source);
  const QString before =
      QStringLiteral("http://127.0.0.1:%1/%2/%3/").arg(port).arg(source->key()).arg(file);
  co_return QUrl::fromEncoded(before.toUtf8() + encodedName(name));
}

void LocalStreamServer::registerSource(std::shared_ptr<StreamSource> source) {
  m_listener->add(std::move(source));
}

void LocalStreamServer::unregisterSource(const QString& key) { m_listener->remove(key); }

} // namespace vellum
