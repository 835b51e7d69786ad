#include "desktop/SingleInstance.h"
#include "desktop/linux/HandoverMessage.h"
#include "desktop/linux/MeetingPlace.h"
#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>
#include <sys/socket.h>
#include <unistd.h>

namespace vellum {

namespace {

constexpr int kMostVisitors = 16;
constexpr int kPause = 20; // milliseconds between two attempts

int left(const QDeadlineTimer& deadline) {
  return std::max(1, static_cast<int>(deadline.remainingTime()));
}

bool isSameUser(const QLocalSocket& socket) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  return getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                    &size) == 0 &&
         peer.uid == geteuid();
}

bool handOver(const QString& address, const QByteArray& message, const QDeadlineTimer& deadline) {
  QLocalSocket socket;
  socket.connectToServer(address);
  if (!socket.waitForConnected(left(deadline)) || !isSameUser(socket)) return false;
  socket.write(message);
  while (socket.bytesAvailable() == 0)
    if (!socket.waitForReadyRead(left(deadline))) return false;
  return socket.read(1) == QByteArray(1, handover::kTaken);
}

} // namespace

// The lock outlives the socket: who finds the lock open finds no socket in use.
class SingleInstance::Door {
public:
  Door(SingleInstance& owner, std::chrono::milliseconds patience)
      : m_owner(owner), m_patience(patience) {
    connect(&m_server, &QLocalServer::newConnection, &owner, [this] {
      while (QLocalSocket* visitor = m_server.nextPendingConnection()) welcome(*visitor);
    });
  }

  ProcessLock::Result lock(const QString& place) { return m_lock.take(place); }
  // With the lock in hand, a socket that is still there belongs to nobody.
  void open(const QString& address) {
    QLocalServer::removeServer(address);
    m_server.listen(address);
  }

private:
  void welcome(QLocalSocket& visitor) {
    connect(&visitor, &QLocalSocket::disconnected, &visitor, &QObject::deleteLater);
    if (!isSameUser(visitor) || m_visitors >= kMostVisitors) return visitor.abort();
    ++m_visitors;
    connect(&visitor, &QObject::destroyed, &m_owner, [this] { --m_visitors; });
    QTimer::singleShot(m_patience, &visitor, [&visitor] { visitor.abort(); });
    visitor.setReadBufferSize(handover::kHeader + handover::kLargest + 1);
    connect(&visitor, &QLocalSocket::readyRead, &visitor, [this, &visitor] { listen(visitor); });
    if (visitor.bytesAvailable() > 0) listen(visitor);
  }
  void listen(QLocalSocket& visitor) {
    const QByteArray arrived = visitor.peek(handover::kHeader + handover::kLargest + 1);
    const auto arrival = handover::arrival(arrived);
    if (arrival == handover::Arrival::Wrong) return visitor.abort();
    if (arrival == handover::Arrival::Incomplete) return;
    disconnect(&visitor, &QLocalSocket::readyRead, nullptr, nullptr);
    visitor.write(&handover::kTaken, 1);
    visitor.disconnectFromServer();
    Q_EMIT m_owner.opened(handover::decode(arrived));
  }

  SingleInstance& m_owner;
  const std::chrono::milliseconds m_patience;
  int m_visitors = 0;
  ProcessLock m_lock;
  QLocalServer m_server;
};

SingleInstance::SingleInstance() : SingleInstance(Settings()) {}
SingleInstance::SingleInstance(Settings settings) : m_settings(std::move(settings)) {}
SingleInstance::~SingleInstance() = default;

SingleInstance::Start SingleInstance::start(const QStringList& links) {
  const auto place = meetingPlace(m_settings.folder);
  if (!place) return Start::First;
  const QString address = meetingSocket(*place);
  const auto message = handover::encode(links);
  auto door = std::make_unique<Door>(*this, m_settings.patience);
  // The other one may be just about to listen, or just about to end.
  for (const QDeadlineTimer deadline(m_settings.patience); !deadline.hasExpired();
       QThread::msleep(kPause)) {
    const auto result = door->lock(*place);
    if (result == ProcessLock::Result::Failed) return Start::First;
    if (result == ProcessLock::Result::Taken) {
      door->open(address);
      m_door = std::move(door);
      return Start::First;
    }
    if (!message) break;
    if (handOver(address, *message, deadline)) return Start::HandedOver;
  }
  return Start::Unanswered;
}

} // namespace vellum
