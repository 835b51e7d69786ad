#include "net/Download.h"
#include <QNetworkReply>
#include <utility>

namespace vellum {

Download::Download(QNetworkReply& reply, std::chrono::milliseconds timeout, std::int64_t maxBytes,
                   Finished finished)
    : QObject(&reply), m_reply(reply), m_maxBytes(maxBytes), m_finished(std::move(finished)) {
  connect(&m_reply, &QNetworkReply::readyRead, this, &Download::take);
  connect(&m_reply, &QNetworkReply::finished, this, &Download::finish);
  connect(&m_timer, &QTimer::timeout, this, [this] { end(NetError::timedOut()); });
  m_timer.setSingleShot(true);
  m_timer.start(timeout);
}

void Download::abort() { m_reply.abort(); }

void Download::take() {
  m_body += m_reply.readAll();
  if (m_body.size() > m_maxBytes) end(NetError::tooLarge());
}

void Download::finish() {
  // An aborted reply is closed, and what it held is gone.
  if (m_reply.isOpen()) take();
  // Qt calls some answers an error and others not; the status alone decides.
  const int status = m_reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  if (status != 0 && (status < 200 || status > 299))
    end(NetError::http(status));
  else if (m_reply.error() != QNetworkReply::NoError)
    end(NetError::platform(m_reply.errorString()));
  else
    end(std::nullopt);
}

void Download::end(std::optional<NetError> error) {
  if (!m_finished) return;
  const Finished finished = std::exchange(m_finished, nullptr);
  m_timer.stop();
  m_reply.disconnect(this);
  m_reply.abort();
  m_reply.deleteLater();
  finished({error ? QByteArray() : std::move(m_body), std::move(error)});
}

} // namespace vellum
