// The library screen: the files that were saved, and what was watched.
#pragma once
#include "app/PlayEntryPoints.h"
#include "storage/DownloadManager.h"
#include "storage/LibraryStore.h"
#include "ui/manage/KeyedRows.h"
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

struct SavedRowItem {
  Q_GADGET
  Q_PROPERTY(QString key MEMBER id)
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString size MEMBER size)

public:
  QString id;
  QString name;
  QString size;
  bool operator==(const SavedRowItem&) const = default;
};

struct HistoryRowItem {
  Q_GADGET
  Q_PROPERTY(QString key MEMBER id)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString times MEMBER times)
  Q_PROPERTY(double progress MEMBER progress) // 0 to 1; 0 while the duration is unknown
  Q_PROPERTY(bool resumes MEMBER resumes)     // a position was kept

public:
  QString id;
  QString title;
  QString times;
  double progress = 0;
  bool resumes = false;
  bool operator==(const HistoryRowItem&) const = default;
};

// Main thread. Rows are named by their keys; an unknown one changes nothing.
class LibraryModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has it.")
  Q_PROPERTY(QAbstractListModel* saved READ saved CONSTANT)     // SavedRowItem
  Q_PROPERTY(QAbstractListModel* history READ history CONSTANT) // HistoryRowItem
  Q_PROPERTY(bool hasSaved READ hasSaved NOTIFY changed)
  Q_PROPERTY(bool hasHistory READ hasHistory NOTIFY changed)

public:
  // All outlive it.
  LibraryModel(LibraryStore& library, DownloadManager& downloads, PlayEntryPoints& entries);

  QAbstractListModel* saved() { return &m_saved; }
  QAbstractListModel* history() { return &m_history; }
  bool hasSaved() const { return !m_saved.rows().empty(); }
  bool hasHistory() const { return !m_history.rows().empty(); }

  // As the screen appears.
  Q_INVOKABLE void open() { m_downloads.refreshSaved(); }
  Q_INVOKABLE void playSaved(const QString& key);
  Q_INVOKABLE void resume(const QString& key);
  Q_INVOKABLE void remove(const QString& key); // all rows of the history with that key
  Q_INVOKABLE void clearHistory() { m_library.clear(); }

Q_SIGNALS:
  void changed();

private:
  void updateSaved();
  void updateHistory();

  LibraryStore& m_library;
  DownloadManager& m_downloads;
  PlayEntryPoints& m_entries;
  KeyedRows<SavedRowItem> m_saved;
  KeyedRows<HistoryRowItem> m_history;
};

} // namespace vellum::ui
