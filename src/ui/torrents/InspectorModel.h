// What the inspector shows: a torrent or a magnet link before anything starts.
#pragma once
#include "app/LinkOpener.h"
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

// Main thread. Its rows are the torrent's files. After it was closed it goes on telling what it
// showed, for the sheet to fade out with.
class InspectorModel final : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has the only one.")
  Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged)
  Q_PROPERTY(QString name READ name NOTIFY infoChanged)
  Q_PROPERTY(QString hashText READ hashText NOTIFY infoChanged)
  Q_PROPERTY(QString countText READ countText NOTIFY infoChanged)
  Q_PROPERTY(bool hasMagnet READ hasMagnet NOTIFY infoChanged) // which buttons there are
  Q_PROPERTY(bool hasFile READ hasFile NOTIFY infoChanged)     // otherwise it is a bare magnet link

public:
  enum Role {
    NameRole = Qt::UserRole, // the path inside the torrent, on one line
    SizeRole,
    KindRole // "video", "subtitles" or "other"
  };

  // All outlive it.
  struct Services {
    Navigation& navigation;
    LinkOpener& links;
    std::function<void(const QString&)> copy;   // onto the clipboard
    std::function<void(const QString&)> reveal; // the path of a file, in the file manager
  };
  explicit InspectorModel(Services services);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  bool isShown() const { return m_services.navigation.inspector().has_value(); }
  QString name() const;
  QString hashText() const;  // "Info hash: …"
  QString countText() const; // "3 file(s) · 1 video · 2 tracker(s)"
  bool hasMagnet() const { return m_info.magnet.has_value(); }
  bool hasFile() const { return m_info.fileUrl.has_value(); }

  Q_INVOKABLE void copyMagnet();
  Q_INVOKABLE void openMagnet(); // in the program that the user has chosen for such
  Q_INVOKABLE void openFile();
  Q_INVOKABLE void revealFile();
  Q_INVOKABLE void close();

Q_SIGNALS:
  void shownChanged();
  void infoChanged();

private:
  void take();

  Services m_services;
  TorrentInfo m_info;
};

} // namespace vellum::ui
