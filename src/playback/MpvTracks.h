// The sound tracks of a film, as a viewer chooses among them.
#pragma once
#include <QList>
#include <QMetaType>
#include <QString>
#include <optional>

namespace vellum {

// A value.
struct AudioOption {
  Q_GADGET
  Q_PROPERTY(qint64 id MEMBER id)
  Q_PROPERTY(QString name MEMBER name)

public:
  qint64 id = 0; // libmpv's number of the track
  QString name;  // "French", "French (Commentary)", "Commentary", "Track 2"

  friend bool operator==(const AudioOption&, const AudioOption&) = default;
};

struct AudioTracks {
  QList<AudioOption> options;
  std::optional<AudioOption> selected;
};

// Reads libmpv's property "track-list". Any thread.
AudioTracks audioTracksOf(const QVariant& trackList);

} // namespace vellum
