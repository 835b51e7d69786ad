// The loopback HTTP server that makes a torrent look like an ordinary video file.
#pragma once
#include "base/Flow.h"
#include "streaming/StreamSource.h"
#include <QString>
#include <QUrl>
#include <memory>
#include <optional>

namespace vellum {

class IoPool;

// Its operations may be called from any thread; listener and connections live on one strand of the
// pool ("stream.server"). Binds to 127.0.0.1 on a port that the system chooses.
class LocalStreamServer {
public:
  explicit LocalStreamServer(IoPool& pool);
  // Closes listener and connections; the pool runs them to their end.
  ~LocalStreamServer();
  LocalStreamServer(const LocalStreamServer&) = delete;
  LocalStreamServer& operator=(const LocalStreamServer&) = delete;

  // Starts the server if needed, registers the source and gives
  // "http://127.0.0.1:PORT/KEY/FILE/NAME"; nothing if the server cannot start. Awaitable from any
  // executor.
  Flow<std::optional<QUrl>> url(std::shared_ptr<StreamSource> source, int file, QString name);

  // Enters the source under its key; replaces an earlier entry.
  void registerSource(std::shared_ptr<StreamSource> source);
  // Removes the entry with this key; connections already running end when their source is stopped.
  void unregisterSource(const QString& key);

private:
  class Listener;
  std::shared_ptr<Listener> m_listener;
};

} // namespace vellum
