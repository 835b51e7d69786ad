// Why a stream failed, with the sentence that the user reads. Plain value.
#pragma once
#include <QString>

namespace vellum {

struct StreamFailure {
  enum class Kind { Other, Disk, NoMetadata, NoVideo, Stalled, Unsupported };
  Kind kind = Kind::Other;
  QString detail; // the sentence itself, for Other and Disk
  bool operator==(const StreamFailure&) const = default;

  QString text() const;

  static StreamFailure other(QString sentence) { return {Kind::Other, std::move(sentence)}; }
  static StreamFailure nothingToStream();
  static StreamFailure downloadFailed(const QString& reason); // of the .torrent file
  static StreamFailure noServer();
  static StreamFailure disk(QString sentence) { return {Kind::Disk, std::move(sentence)}; }
};

} // namespace vellum
