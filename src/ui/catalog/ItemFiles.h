// The files of a catalog item, as the item page lists them and warns of them.
#pragma once
#include "models/MediaItem.h"
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

// What is to be known about an item before its files are looked at.
enum class ItemWarning { None, Restricted, NoVideo, DownloadOnly };

// A record of the catalog as the page needs it. Plain value; made on a worker.
struct ItemContents {
  struct Row {
    ArchiveFile file;
    bool isPlayable = false; // of the kind that plays, whether or not it may
  };

  ItemContents() = default;
  explicit ItemContents(const ArchiveDetails& details);

  MediaItem item;
  bool restricted = false;
  ItemWarning warning = ItemWarning::None;
  std::vector<Row> rows; // those that play, then the other videos
  ArchiveFiles subtitles;
  std::optional<ArchiveFile> torrent;
};

// Main thread.
class ItemFiles final : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The model of the item has it.")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
  enum Role {
    NameRole = Qt::UserRole,
    FormatRole,
    SizeRole,    // as text; "" if unknown
    GroupRole,   // the heading that it stands under; "" for none
    CanPlayRole, // whether it has the button
  };

  explicit ItemFiles(QObject* parent) : QAbstractListModel(parent) {}

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  int count() const { return int(m_contents.rows.size()); }
  const ItemContents& contents() const { return m_contents; }
  void setContents(ItemContents contents);
  // Nothing for a row that is not there.
  const ArchiveFile* file(int row) const;
  bool canPlay(int row) const;

Q_SIGNALS:
  void countChanged();

private:
  QString group(const ItemContents::Row& row) const;

  ItemContents m_contents;
};

} // namespace vellum::ui
