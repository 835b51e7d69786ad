// Magnet links and .torrent files on their way into the inspector. Nothing here starts a download.
#pragma once
#include "app/Navigation.h"
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "net/FetchData.h"

namespace vellum {

// Main thread; files are read, written and parsed on a worker. Of two that overlap, the one that
// ends last stays in the inspector.
class LinkOpener final {
public:
  static constexpr std::chrono::seconds kFetchTimeout{25};
  static constexpr qint64 kLargestFile = 64 * 1024 * 1024; // bytes

  // What it asks of cache and desktop.
  class Surroundings {
  public:
    virtual ~Surroundings() = default;
    virtual QString torrentDir() = 0; // where fetched .torrent files are kept
    virtual void torrentStored() = 0;
    // Hands a magnet link or a file to the program that the user has chosen for it; false if there
    // is none.
    virtual bool openWithDesktop(const QString& link) = 0;
  };

  // All outlive it.
  LinkOpener(MainLoop& main, IoPool& pool, FetchData fetch, Navigation& navigation,
             Surroundings& surroundings);
  ~LinkOpener();
  LinkOpener(const LinkOpener&) = delete;
  LinkOpener& operator=(const LinkOpener&) = delete;

  // What the system hands over: a magnet link, or the path or file address of a .torrent. Anything
  // else is dropped without a word.
  void open(const QString& link);
  void inspectMagnet(const QString& text);
  void inspectTorrentUrl(const QUrl& url);
  void inspectFile(const QString& path);
  void openExternally(const QString& link);

private:
  // What came of a file: its description, or else the reason why not.
  struct Read {
    std::optional<TorrentInfo> info;
    QString failure;
  };
  static Flow<Read> readFile(QString path);
  static Flow<Read> fetchFile(QUrl url, FetchData fetch, QString directory);
  static Read parsed(const QByteArray& bytes, const QString& path);
  // `stored`: whether a file has come into the cache folder.
  void begin(Flow<Read> reading, bool stored);
  static Flow<> take(std::weak_ptr<bool> alive, LinkOpener& self, Flow<Read> reading,
                     WorkerStrand strand, bool stored);

  IoPool& m_pool;
  FetchData m_fetch;
  Navigation& m_navigation;
  Surroundings& m_surroundings;
  FlowGroup m_flows;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace vellum
