#include "ui/player/StreamModel.h"
#include "base/Text.h"

namespace vellum::ui {

StreamModel::StreamModel(Playback& playback, Navigation& navigation)
    : m_playback(playback), m_navigation(navigation) {
  const auto tell = [this] { Q_EMIT changed(); };
  connect(&playback.coordinator, &PlaybackCoordinator::streamChanged, this, tell);
  connect(&playback.coordinator, &PlaybackCoordinator::nowPlayingChanged, this, tell);
  connect(&playback.player, &VideoPlayerManager::currentTimeChanged, this, tell);
  connect(&playback.player, &VideoPlayerManager::durationChanged, this, tell);
  connect(&playback.player, &VideoPlayerManager::isBufferingChanged, this, tell);
}

bool StreamModel::isBeforePlaying() const {
  return exists() && !stream()->failure && stream()->stage != StreamStage::Playing;
}

QString StreamModel::middle() const {
  if (!exists()) return {};
  switch (streamMiddle(*stream())) {
  case StreamMiddle::Nothing: return {};
  case StreamMiddle::Progress: return QStringLiteral("progress");
  case StreamMiddle::Choices: return QStringLiteral("choices");
  case StreamMiddle::Failure: return QStringLiteral("failure");
  }
  return {};
}

QString StreamModel::corner() const {
  const bool isShown = exists() && !stream()->failure && stream()->stage == StreamStage::Playing;
  return isShown ? cornerText(*stream()) : QString();
}

QString StreamModel::failure() const {
  return exists() && stream()->failure ? stream()->failure->text() : QString();
}

QVariantList StreamModel::choices() const {
  QVariantList list;
  if (!exists()) return list;
  for (const StreamChoice& choice : stream()->choices)
    list.append(QVariantMap{{QStringLiteral("id"), choice.id},
                            {QStringLiteral("name"), choice.name},
                            {QStringLiteral("size"), formatByteCount(choice.size)}});
  return list;
}

QString StreamModel::title() const {
  const auto& nowPlaying = m_playback.coordinator.nowPlaying();
  return nowPlaying ? nowPlaying->title : QString();
}

QString StreamModel::miniText() const {
  const VideoPlayerManager& player = m_playback.player;
  return miniPlayerText(stream(), player.isBuffering(), player.currentTime(), player.duration());
}

void StreamModel::cancel() {
  m_playback.coordinator.cancel();
  m_navigation.setShowPlayer(false);
}

void StreamModel::close() {
  m_playback.coordinator.close();
  m_navigation.setShowPlayer(false);
}

} // namespace vellum::ui
