// The rows of a shelf or a grid, as a list model.
#pragma once
#include <QAbstractListModel>
#include <QUrl>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <vector>

namespace vellum::ui {

struct MediaRow {
  QString key; // what makes two rows the same
  QString title;
  QString subtitle;     // may be empty
  QUrl poster;          // may be empty
  double progress = -1; // 0 to 1, less than 0 for none
  bool operator==(const MediaRow&) const = default;
};

using MediaRows = std::vector<MediaRow>;

// Main thread. Rows that stay keep their delegates, so that a shelf moves no more than it must.
class MediaList final : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The model of a screen has it.")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
  enum Role { KeyRole = Qt::UserRole, TitleRole, SubtitleRole, PosterRole, ProgressRole };

  // What a press on a row does, by the row's key.
  explicit MediaList(std::function<void(const QString& key)> open) : m_open(std::move(open)) {}

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  int count() const { return int(m_rows.size()); }
  const MediaRows& rows() const { return m_rows; }
  void setRows(MediaRows rows);
  Q_INVOKABLE void open(int row) const; // nothing for a row that is not there

Q_SIGNALS:
  void countChanged();

private:
  void removeOthers(const MediaRows& wanted);
  void place(int at, const MediaRow& row);

  std::function<void(const QString&)> m_open;
  MediaRows m_rows;
};

} // namespace vellum::ui
