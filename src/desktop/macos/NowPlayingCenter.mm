#include "desktop/MediaControls.h"
#import <AppKit/AppKit.h>
#import <MediaPlayer/MediaPlayer.h>
#include <algorithm>

namespace vellum {

namespace {

constexpr double kSkip = 15; // seconds

// Main thread, where the system also calls its handlers.
class NowPlayingCenter final : public MediaControls {
public:
  NowPlayingCenter() {
    MPRemoteCommandCenter* center = [MPRemoteCommandCenter sharedCommandCenter];
    center.skipForwardCommand.preferredIntervals = @[ @(kSkip) ];
    center.skipBackwardCommand.preferredIntervals = @[ @(kSkip) ];
    answer(center.playCommand, ^(MPRemoteCommandEvent*) {
      Q_EMIT play();
    });
    answer(center.pauseCommand, ^(MPRemoteCommandEvent*) {
      Q_EMIT pause();
    });
    answer(center.togglePlayPauseCommand, ^(MPRemoteCommandEvent*) {
      Q_EMIT toggle();
    });
    answer(center.stopCommand, ^(MPRemoteCommandEvent*) {
      Q_EMIT stop();
    });
    answer(center.changePlaybackPositionCommand, ^(MPRemoteCommandEvent* event) {
      const double to = ((MPChangePlaybackPositionCommandEvent*)event).positionTime;
      Q_EMIT seek(std::clamp(to, 0.0, std::max(0.0, m_status.duration)));
    });
    answer(center.skipForwardCommand, ^(MPRemoteCommandEvent* event) {
      skip(((MPSkipIntervalCommandEvent*)event).interval);
    });
    answer(center.skipBackwardCommand, ^(MPRemoteCommandEvent* event) {
      skip(-((MPSkipIntervalCommandEvent*)event).interval);
    });
  }
  ~NowPlayingCenter() override {
    for (MPRemoteCommand* command in m_commands) [command removeTarget:nil];
    show({});
  }

  void show(const MediaStatus& status) override {
    if (status == m_status) return;
    m_status = status;
    MPNowPlayingInfoCenter* center = [MPNowPlayingInfoCenter defaultCenter];
    if (!status.isLoaded) {
      center.nowPlayingInfo = nil;
      center.playbackState = MPNowPlayingPlaybackStateStopped;
      return;
    }
    center.nowPlayingInfo = @{
      MPMediaItemPropertyTitle : status.title.toNSString(),
      MPMediaItemPropertyPlaybackDuration : @(status.duration),
      MPNowPlayingInfoPropertyElapsedPlaybackTime : @(status.position),
      MPNowPlayingInfoPropertyPlaybackRate : @(status.isPlaying ? status.rate : 0.0),
      MPNowPlayingInfoPropertyMediaType : @(MPNowPlayingInfoMediaTypeVideo),
    };
    center.playbackState =
        status.isPlaying ? MPNowPlayingPlaybackStatePlaying : MPNowPlayingPlaybackStatePaused;
  }

private:
  void answer(MPRemoteCommand* command, void (^act)(MPRemoteCommandEvent*)) {
    [m_commands addObject:command];
    [command addTargetWithHandler:^MPRemoteCommandHandlerStatus(MPRemoteCommandEvent* event) {
      if (!m_status.isLoaded) return MPRemoteCommandHandlerStatusNoActionableNowPlayingItem;
      act(event);
      return MPRemoteCommandHandlerStatusSuccess;
    }];
  }
  void skip(double seconds) {
    if (m_status.duration <= 0) return;
    const double back = std::min(0.0, -m_status.position);
    const double forth = std::max(0.0, m_status.duration - m_status.position);
    Q_EMIT seekBy(std::clamp(seconds, back, forth));
  }

  MediaStatus m_status;
  NSMutableArray<MPRemoteCommand*>* m_commands = [NSMutableArray array];
};

} // namespace

std::unique_ptr<MediaControls> MediaControls::make() {
  return std::make_unique<NowPlayingCenter>();
}

} // namespace vellum
