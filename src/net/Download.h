// One answer on its way into memory: its total time-out, its size limit and its end.
#pragma once
#include "net/NetError.h"
#include "net/Transport.h"
#include <QObject>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

class QNetworkReply;

namespace vellum {

// Lives on the main thread, as a child of its reply, which it disposes of when it has ended.
class Download final : public QObject {
  Q_OBJECT

public:
  struct Outcome {
    HttpResponse response;         // its body as it came, still packed
    QByteArray coding = {};        // what it is packed with; empty for nothing
    std::optional<NetError> error; // when there is no whole answer
    bool wasAborted = false;       // by us; then there is neither answer nor error
  };
  // Called once, on the main thread; not at all if the reply is destroyed before its end.
  using Finished = std::function<void(Outcome)>;

  // `timeout` bounds the whole, not a pause. A body of more than `maxBytes` fails.
  Download(QNetworkReply& reply, std::chrono::milliseconds timeout, std::int64_t maxBytes,
           Finished finished);

  // Ends it at once as cancelled.
  void abort();

private Q_SLOTS:
  void take();
  void finish();

private:
  int status() const;
  void fail(NetError error);
  void end(Outcome outcome);

  QNetworkReply& m_reply;
  const std::int64_t m_maxBytes;
  Finished m_finished;
  QTimer m_timer;
  QByteArray m_body;
};

} // namespace vellum
