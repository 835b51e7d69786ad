// What playback and link opener ask of desktop and cache, answered by this machine.
#pragma once
#include "app/LinkOpener.h"
#include "platform/ChildProcess.h"
#include "playback/ExternalPlayers.h"
#include "storage/CacheManager.h"

namespace vellum {

// Main thread.
class DesktopPrograms final : public ExternalPlayers::Desktop {
public:
  bool isExecutable(const QString& path) const override;
  bool launch(const QString& program, const QStringList& arguments) override;
  void terminate() override { m_child.terminate(); }
  QString findProgram(const QString& name) const override;
  bool openInVlc(const QUrl& url) override;

private:
  platform::ChildProcess m_child;
};

// Main thread.
class LinkServices final : public LinkOpener::Surroundings {
public:
  // The cache outlives it.
  explicit LinkServices(CacheManager& cache) : m_cache(cache) {}
  QString torrentDir() override { return m_cache.torrentDir(); }
  void torrentStored() override { m_cache.refresh(); }
  bool openWithDesktop(const QString& link) override;

private:
  CacheManager& m_cache;
};

} // namespace vellum
