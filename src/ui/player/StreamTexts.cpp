#include "ui/player/StreamTexts.h"
#include "base/Fmt.h"
#include "base/Text.h"
#include <QCoreApplication>
#include <cmath>

namespace vellum::ui {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("StreamTexts", text); }

QString rate(double bytesPerSecond) {
  const bool isReal = std::isfinite(bytesPerSecond) && std::abs(bytesPerSecond) < 0x1p62;
  return formatByteCount(isReal ? static_cast<std::int64_t>(bytesPerSecond) : 0);
}

} // namespace

QString stageText(const StreamState& stream) {
  switch (stream.stage) {
  case StreamStage::Connecting: return tr("Connecting to peers…");
  case StreamStage::Metadata: return tr("Fetching metadata…");
  case StreamStage::Selecting: return tr("Selecting file…");
  case StreamStage::Buffering:
    return tr("Buffering %1%").arg(static_cast<int>(stream.progress * 100));
  case StreamStage::Playing: return tr("Playing");
  }
  return {};
}

QString numbersText(const StreamState& stream) {
  const QString text =
      stream.peers == 1 ? tr("%1 peer · ↓ %2/s · ↑ %3/s") : tr("%1 peers · ↓ %2/s · ↑ %3/s");
  return text.arg(QString::number(stream.peers), rate(stream.down), rate(stream.up));
}

QString cornerText(const StreamState& stream) {
  return tr("%1 peers · ↓ %2/s · ↑ %3/s · uploaded %4")
      .arg(QString::number(stream.peers), rate(stream.down), rate(stream.up),
           formatByteCount(stream.uploaded));
}

QString miniPlayerText(const std::optional<StreamState>& stream, bool isBuffering,
                       double currentTime, double duration) {
  if (stream && !stream->failure && stream->stage != StreamStage::Playing)
    return stream->stage == StreamStage::Buffering ? tr("Buffering") : stageText(*stream);
  if (isBuffering) return tr("Buffering…");
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
