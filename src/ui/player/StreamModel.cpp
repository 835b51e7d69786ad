#include "ui/player/StreamModel.h"
#include "base/Text.h"

namespace vellum::ui {

StreamModel::StreamModel(Playback& playback, Navigation& navigation)
    : m_playback(playback), m_navigation(navigation) {
  using Coordinator = PlaybackCoordinator;
  using Player = VideoPlayerManager;
  connect(&playback.coordinator, &Coordinator::streamChanged, this, &StreamModel::changed);
  connect(&playback.coordinator, &Coordinator::nowPlayingChanged, this, &StreamModel::changed);
  connect(this, &StreamModel::changed, this, &StreamModel::compareChoices);
  connect(this, &StreamModel::changed, this, &StreamModel::miniTextChanged);
  connect(&playback.player, &Player::currentTimeChanged, this, &StreamModel::miniTextChanged);
  connect(&playback.player, &Player::durationChanged, this, &StreamModel::miniTextChanged);
  connect(&playback.player, &Player::isBufferingChanged, this, &StreamModel::miniTextChanged);
  compareChoices();
}

void StreamModel::compareChoices() {
  const auto choices = exists() ? stream()->choices : std::vector<StreamChoice>();
  if (choices == m_choices) return;
  m_choices = choices;
  Q_EMIT choicesChanged();
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
  for (const StreamChoice& choice : m_choices)
    list.append(QVariantMap{{QStringLiteral("id"), choice.id},
                            {QStringLiteral("name"), printable(shortened(choice.name))},
                            {QStringLiteral("size"), formatByteCount(choice.size)}});
  return list;
}

QString StreamModel::title() const {
  const auto& nowPlaying = m_playback.coordinator.nowPlaying();
  return nowPlaying ? printable(shortened(nowPlaying->title)) : QString();
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
