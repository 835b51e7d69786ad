#include "ui/player/PlayerModel.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include <algorithm>

namespace vellum::ui {

namespace {

struct Speed {
  float rate;
  const char* name;
};
constexpr Speed kSpeeds[] = {{0.5F, "0.5x"},   {0.75F, "0.75x"}, {1.0F, "1.0x"},
                             {1.25F, "1.25x"}, {1.5F, "1.5x"},   {2.0F, "2.0x"}};

QString ticked(bool isInUse, const QString& entry) {
  return isInUse ? QStringLiteral("✓ ") + entry : entry;
}

} // namespace

PlayerModel::PlayerModel(Playback& playback, Navigation& navigation)
    : m_playback(playback), m_navigation(navigation), m_stream(playback, navigation) {
  using Player = VideoPlayerManager;
  const VideoPlayerManager* player = &playback.player;
  connect(player, &Player::isBufferingChanged, this, &PlayerModel::isWaitingChanged);
  connect(&m_stream, &StreamModel::changed, this, &PlayerModel::isWaitingChanged);
  connect(player, &Player::errorChanged, this, &PlayerModel::errorChanged);
  connect(&m_stream, &StreamModel::changed, this, &PlayerModel::errorChanged);
  connect(player, &Player::isMutedChanged, this, &PlayerModel::isSilentChanged);
  connect(player, &Player::volumeChanged, this, &PlayerModel::isSilentChanged);
  connect(player, &Player::audioChanged, this, &PlayerModel::audioChanged);
  connect(player, &Player::rateChanged, this, &PlayerModel::speedChanged);
  connect(player, &Player::aspectChanged, this, &PlayerModel::aspectChanged);
  const SubtitleManager* subtitles = &playback.subtitles;
  connect(subtitles, &SubtitleManager::tracksChanged, this, &PlayerModel::subtitlesChanged);
  connect(subtitles, &SubtitleManager::selectedChanged, this, &PlayerModel::subtitlesChanged);
  connect(subtitles, &SubtitleManager::errorChanged, this, &PlayerModel::subtitleErrorChanged);
  connect(subtitles, &SubtitleManager::currentTextChanged, this, &PlayerModel::subtitleTextChanged);
}

QStringList PlayerModel::audioOptions() const {
  QStringList entries;
  for (const AudioOption& option : player()->audioOptions())
    entries +=
        option == player()->selectedAudio() ? option.name + QStringLiteral("  ✓") : option.name;
  return entries;
}

int PlayerModel::audioIndex() const {
  const auto& selected = player()->selectedAudio();
  return selected ? static_cast<int>(player()->audioOptions().indexOf(*selected)) : -1;
}

QStringList PlayerModel::speeds() const {
  QStringList entries;
  for (const Speed& speed : kSpeeds)
    entries += ticked(speed.rate == player()->rate(), withDecimalSign(QLatin1String(speed.name)));
  return entries;
}

int PlayerModel::speedIndex() const {
  const auto* found = std::ranges::find(kSpeeds, player()->rate(), &Speed::rate);
  return found == std::end(kSpeeds) ? -1 : static_cast<int>(found - std::begin(kSpeeds));
}

QStringList PlayerModel::aspects() const {
  QStringList entries;
  for (const auto mode : VideoPlayerManager::kAspectModes)
    entries += VideoPlayerManager::aspectName(mode);
  return entries;
}

QStringList PlayerModel::subtitles() const {
  const auto& selected = m_playback.subtitles.selected();
  QStringList entries{ticked(!selected, tr("Off"))};
  for (const SubtitleTrack& track : m_playback.subtitles.tracks())
    entries += ticked(track == selected, track.name);
  return entries;
}

int PlayerModel::subtitleIndex() const {
  const auto& selected = m_playback.subtitles.selected();
  if (!selected) return 0;
  const auto& tracks = m_playback.subtitles.tracks();
  const auto found = std::ranges::find(tracks, *selected);
  return found == tracks.end() ? -1 : static_cast<int>(found - tracks.begin()) + 1;
}

QString PlayerModel::timeText(double seconds) const { return Fmt::time(seconds); }

void PlayerModel::setVolume(double volume) {
  player()->setVolume(static_cast<float>(volume));
  if (player()->volume() > 0) player()->setMuted(false);
}

void PlayerModel::chooseAudio(int index) {
  // A copy: choosing changes the list.
  const QList<AudioOption> options = player()->audioOptions();
  if (index >= 0 && index < options.size()) player()->selectAudio(options[index]);
}

void PlayerModel::chooseSpeed(int index) {
  if (index >= 0 && index < static_cast<int>(std::size(kSpeeds)))
    player()->setRate(kSpeeds[index].rate);
}

void PlayerModel::chooseAspect(int index) {
  if (index >= 0 && index < static_cast<int>(std::size(VideoPlayerManager::kAspectModes)))
    player()->setAspect(VideoPlayerManager::kAspectModes[index]);
}

void PlayerModel::chooseSubtitle(int index) {
  const auto& tracks = m_playback.subtitles.tracks();
  if (index == 0) return m_playback.subtitles.select({});
  if (index > 0 && static_cast<std::size_t>(index) <= tracks.size())
    m_playback.subtitles.select(SubtitleTrack(tracks[static_cast<std::size_t>(index) - 1]));
}

void PlayerModel::retry() {
  const QUrl url = player()->currentURL();
  if (!url.isEmpty()) player()->load(url, player()->currentTime());
}

void PlayerModel::closeMini() {
  m_playback.coordinator.close();
  m_playback.coordinator.cancel(); // finds nothing left to do
}

} // namespace vellum::ui
