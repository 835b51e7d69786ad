// The world of a SessionCore without sockets: dialled peers are links that a test plays.
#pragma once
#include "Frames.h"
#include "MadeTorrent.h"
#include "engine/SessionCore.h"
#include "support/ManualClock.h"
#include <QTemporaryDir>

namespace vellum::test {

class SwarmWorld final : public SessionCore::Outside {
public:
  struct Dialled {
    PeerAddr address;
    std::shared_ptr<PeerConn> peer;
    std::shared_ptr<RecordingLink> link;
  };

  std::unique_ptr<SessionCore> makeCore(const Hash20& infoHash, QStringList trackers = {},
                                        QString title = {}) {
    dialled.clear();
    announces.clear();
    SessionCore::Config config{infoHash, {}, std::move(trackers), std::move(title), directory()};
    return std::make_unique<SessionCore>(std::move(config), clock, *this);
  }
  QString directory() const { return m_folder.filePath(QStringLiteral("session")); }

  std::shared_ptr<PeerLink> dial(const PeerAddr& address, std::shared_ptr<PeerConn> peer) override {
    auto link = std::make_shared<RecordingLink>();
    dialled.push_back({address, std::move(peer), link});
    return link;
  }
  void announce(const QStringList& trackers) override { announces.push_back(trackers); }
  void wakeForUploads(TimePoint) override {}
  void metadataArrived() override { ++metadataArrivals; }
  void milestone() override { ++milestones; }

  ManualClock clock;
  std::vector<Dialled> dialled;
  std::vector<QStringList> announces;
  int metadataArrivals = 0;
  int milestones = 0;

private:
  QTemporaryDir m_folder;
};

} // namespace vellum::test
