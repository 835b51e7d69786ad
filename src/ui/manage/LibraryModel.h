// The library screen: the files that were saved, and what was watched.
#pragma once
#include "app/PlayEntryPoints.h"
#include "storage/DownloadManager.h"
#include "storage/LibraryStore.h"
#include "ui/manage/KeyedRows.h"
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

struct LibraryRowItem {
  Q_GADGET
  Q_PROPERTY(QString key MEMBER id)
  Q_PROPERTY(QString group MEMBER group) // "saved" or "history"
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(double progress MEMBER progress) // 0 to 1; 0 while the duration is unknown
  Q_PROPERTY(bool resumes MEMBER resumes)     // a position was kept

public:
  QString id;
  QString group;
  QString title;
  QString detail;
  double progress = 0;
  bool resumes = false;
  bool operator==(const LibraryRowItem&) const = default;
};

// Main thread. Rows are named by their keys; an unknown one changes nothing.
class LibraryModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has it.")
  // LibraryRowItem: what was saved, then what was watched.
  Q_PROPERTY(QAbstractListModel* rows READ rows CONSTANT)
  Q_PROPERTY(bool hasSaved READ hasSaved NOTIFY changed)
  Q_PROPERTY(bool hasHistory READ hasHistory NOTIFY changed)

public:
  // All outlive it.
  LibraryModel(LibraryStore& library, DownloadManager& downloads, PlayEntryPoints& entries);

  QAbstractListModel* rows() { return &m_rows; }
  bool hasSaved() const { return !m_downloads.saved().empty(); }
  bool hasHistory() const { return !m_library.history().empty(); }

  // As the screen appears.
  Q_INVOKABLE void open() { m_downloads.refreshSaved(); }
  Q_INVOKABLE void playSaved(const QString& key);
  Q_INVOKABLE void resume(const QString& key);
  Q_INVOKABLE void remove(const QString& key); // of the history
  Q_INVOKABLE void clearHistory() { m_library.clear(); }

Q_SIGNALS:
  void changed();

private:
  void update();

  LibraryStore& m_library;
  DownloadManager& m_downloads;
  PlayEntryPoints& m_entries;
  KeyedRows<LibraryRowItem> m_rows;
};

} // namespace vellum::ui
