#include "ui/player/StreamTexts.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include <QCoreApplication>
#include <cmath>

namespace vellum::ui {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(StreamTexts)
};

QString rate(double bytesPerSecond) {
  const bool isReal = std::isfinite(bytesPerSecond) && std::abs(bytesPerSecond) < 0x1p62;
  return formatByteCount(isReal ? static_cast<std::int64_t>(bytesPerSecond) : 0);
}

} // namespace

QString stageText(const StreamState& stream) {
  switch (stream.stage) {
  case StreamStage::Connecting: return Texts::tr("Connecting to peers…");
  case StreamStage::Metadata: return Texts::tr("Fetching metadata…");
  case StreamStage::Selecting: return Texts::tr("Selecting file…");
  case StreamStage::Buffering:
    return Texts::tr("Buffering %1%").arg(static_cast<int>(stream.progress * 100));
  case StreamStage::Playing: return Texts::tr("Playing");
  }
  return {};
}

QString numbersText(const StreamState& stream) {
  const QString text = stream.peers == 1 ? Texts::tr("%1 peer · ↓ %2/s · ↑ %3/s")
                                         : Texts::tr("%1 peers · ↓ %2/s · ↑ %3/s");
  return text.arg(QString::number(stream.peers), rate(stream.down), rate(stream.up));
}

QString cornerText(const StreamState& stream) {
  return Texts::tr("%n peers · ↓ %1/s · ↑ %2/s · uploaded %3", nullptr, stream.peers)
      .arg(rate(stream.down), rate(stream.up), formatByteCount(stream.uploaded));
}

QString miniPlayerText(const std::optional<StreamState>& stream, bool isBuffering,
                       double currentTime, double duration) {
  if (stream && !stream->failure && stream->stage != StreamStage::Playing)
    return stream->stage == StreamStage::Buffering ? Texts::tr("Buffering") : stageText(*stream);
  if (isBuffering) return Texts::tr("Buffering…");
  return Fmt::time(currentTime) + QStringLiteral(" / ") + Fmt::time(duration);
}

StreamMiddle streamMiddle(const StreamState& stream) {
  if (stream.failure) return StreamMiddle::Failure;
  if (!stream.choices.empty()) return StreamMiddle::Choices;
  return stream.stage == StreamStage::Playing ? StreamMiddle::Nothing : StreamMiddle::Progress;
}

bool canRetry(const StreamState& stream) {
  using Kind = StreamFailure::Kind;
  return stream.failure && stream.failure->kind != Kind::Disk &&
         stream.failure->kind != Kind::NoVideo;
}

} // namespace vellum::ui
