#include "net/Download.h"
#include <QNetworkReply>
#include <utility>

namespace vellum {

namespace {

NetError::Reason reasonOf(QNetworkReply::NetworkError error) {
  using Reason = NetError::Reason;
  switch (error) {
  case QNetworkReply::HostNotFoundError: return Reason::HostNotFound;
  case QNetworkReply::ConnectionRefusedError: return Reason::CannotConnect;
  case QNetworkReply::TimeoutError: return Reason::TimedOut;
  case QNetworkReply::SslHandshakeFailedError: return Reason::Tls;
  case QNetworkReply::TemporaryNetworkFailureError:
  case QNetworkReply::NetworkSessionFailedError: return Reason::NoConnection;
  default: return Reason::Other;
  }
}

// Qt calls some whole answers an error, for their status alone. What the network did has the
// numbers below those of proxies.
bool isOnlyAboutStatus(QNetworkReply::NetworkError error, int status) {
  const bool isGood = status == 0 || (status >= 200 && status <= 299);
  return !isGood && error >= QNetworkReply::ProxyConnectionRefusedError;
}

std::optional<NetError> errorOf(const QNetworkReply& reply, int status) {
  const auto error = reply.error();
  if (error == QNetworkReply::NoError || isOnlyAboutStatus(error, status)) return std::nullopt;
  return NetError::platform(reasonOf(error), reply.errorString());
}

} // namespace

Download::Download(QNetworkReply& reply, std::chrono::milliseconds timeout, std::int64_t maxBytes,
                   Finished finished)
    : QObject(&reply), m_reply(reply), m_maxBytes(maxBytes), m_finished(std::move(finished)) {
  // By name: what a connection to a function keeps may be freed by the network stack's own thread,
  // behind a lock that the thread sanitizer does not see.
  connect(&m_reply, SIGNAL(readyRead()), this, SLOT(take()));
  connect(&m_reply, SIGNAL(finished()), this, SLOT(finish()));
  connect(&m_timer, &QTimer::timeout, this, [this] { fail(NetError::timedOut()); });
  m_timer.setSingleShot(true);
  m_timer.start(timeout);
}

void Download::abort() { end({.response = {}, .error = {}, .wasAborted = true}); }

void Download::fail(NetError error) { end({.response = {}, .error = std::move(error)}); }

void Download::take() {
  m_body += m_reply.readAll();
  if (m_body.size() > m_maxBytes) fail(NetError::tooLarge());
}

void Download::finish() {
  // An aborted reply is closed, and what it held is gone.
  if (m_reply.isOpen()) take();
  Outcome outcome{.response = {}, .error = errorOf(m_reply, status())};
  if (!outcome.error) outcome.response.body = std::move(m_body);
  end(std::move(outcome));
}

int Download::status() const {
  return m_reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

void Download::end(Outcome outcome) {
  if (!m_finished) return;
  const Finished finished = std::exchange(m_finished, nullptr);
  outcome.response.status = status();
  outcome.coding = m_reply.rawHeader("Content-Encoding");
  if (m_reply.hasRawHeader("Content-Type"))
    outcome.response.contentType = QString::fromLatin1(m_reply.rawHeader("Content-Type"));
  m_timer.stop();
  m_reply.disconnect(this);
  // A reply that has failed already minds being aborted.
  if (m_reply.isRunning() && m_reply.error() == QNetworkReply::NoError) m_reply.abort();
  m_reply.deleteLater();
  finished(std::move(outcome));
}

} // namespace vellum
