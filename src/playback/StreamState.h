// What the screens show of a stream, of a result's row, and of a question to the user. Plain
// values.
#pragma once
#include "models/TorrentResult.h"
#include "playback/StreamFailure.h"
#include <QUuid>

namespace vellum {

enum class StreamStage { Connecting, Metadata, Selecting, Buffering, Playing };

// One of several files that could be meant.
struct StreamChoice {
  int id = 0;      // index in the torrent's list of files
  QString name;    // path inside the torrent
  qint64 size = 0; // bytes
  bool operator==(const StreamChoice&) const = default;
};

struct StreamState {
  QString title;
  StreamStage stage = StreamStage::Connecting;
  double progress = 0; // of the window at the start, 0.0 to 1.0
  qint64 peers = 0;
  double down = 0; // bytes per second
  double up = 0;
  qint64 uploaded = 0;           // bytes
  std::optional<QString> notice; // a line that is no failure
  std::optional<StreamFailure> failure;
  std::vector<StreamChoice> choices; // while the user is asked which file is meant
  bool operator==(const StreamState&) const = default;
};

struct RowState {
  enum class Kind { Failed, Starting, Playing };
  Kind kind = Kind::Starting;
  QString text; // the sentence of a failure
  bool operator==(const RowState&) const = default;
};

// The key of a result's row: its info hash, or its id where there is none.
inline QString rowKey(const TorrentResult& result) { return result.infoHash.value_or(result.id); }

// Whether a torrent that nobody seems to seed shall be tried.
struct ZeroSeedPrompt {
  QUuid id = QUuid::createUuid();
  TorrentResult result;           // what would be played
  std::optional<QString> quality; // what was asked for
};

} // namespace vellum
