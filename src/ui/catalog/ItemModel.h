// One item of the catalog: what is known of it at once, and its files when they have come.
#pragma once
#include "app/LinkOpener.h"
#include "app/PlayEntryPoints.h"
#include "ui/catalog/ItemFiles.h"

namespace vellum::ui {

// Main thread; records are fetched and sorted on a worker. Shows what Navigation has selected.
// After it was closed it goes on telling what it showed, for the sheet to fade out with.
class ItemModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has the only one.")
  Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString byline READ byline NOTIFY changed)   // year and creator; may be empty
  Q_PROPERTY(QString summary READ summary NOTIFY changed) // plain text of several lines, or ""
  Q_PROPERTY(QUrl poster READ poster NOTIFY changed)
  Q_PROPERTY(QString licence READ licence NOTIFY changed) // the address, or ""
  Q_PROPERTY(bool licenceIsLink READ licenceIsLink NOTIFY changed)
  Q_PROPERTY(bool loading READ isLoading NOTIFY changed)
  Q_PROPERTY(QString errorText READ errorText NOTIFY changed) // "" when there is none
  Q_PROPERTY(QString warning READ warning NOTIFY changed)     // "" when there is none
  Q_PROPERTY(bool restricted READ isRestricted NOTIFY changed)
  Q_PROPERTY(QString subtitlesText READ subtitlesText NOTIFY changed) // "" without any
  Q_PROPERTY(bool hasTorrent READ hasTorrent NOTIFY changed)
  Q_PROPERTY(vellum::ui::ItemFiles* files READ files CONSTANT)

public:
  static constexpr qsizetype kLongestSummary = 4000; // characters

  // All outlive it.
  struct Services {
    MainLoop& main;
    IoPool& pool;
    Navigation& navigation;
    PlayEntryPoints& entries;
    LinkOpener& links;
    // The record of an item, by its id. Awaited on a worker, where it also parses. Throws errors
    // with a sentence.
    std::function<Flow<ArchiveDetails>(QString id)> details;
    std::function<void(const ArchiveFile&, const MediaItem&)> download;
    std::function<void(const QUrl&)> openPage; // in the browser
  };
  explicit ItemModel(Services services);
  // A request under way ends by itself on the pool.
  ~ItemModel() override;

  bool isShown() const { return m_services.navigation.selectedItem().has_value(); }
  QString title() const;
  QString byline() const;
  QString summary() const;
  QUrl poster() const { return m_item.thumbnailURL(); }
  QString licence() const;
  bool licenceIsLink() const;
  bool isLoading() const { return m_state == State::Loading; }
  QString errorText() const;
  QString warning() const;
  bool isRestricted() const { return contents().restricted; }
  QString subtitlesText() const;
  bool hasTorrent() const { return contents().torrent.has_value(); }
  ItemFiles* files() { return &m_files; }

  // Rows are those of the files.
  Q_INVOKABLE void play(int row); // nothing unless it may play
  Q_INVOKABLE void save(int row);
  Q_INVOKABLE void inspectTorrent();
  Q_INVOKABLE void openItemPage();
  Q_INVOKABLE void openLicence();
  Q_INVOKABLE void close();

Q_SIGNALS:
  void shownChanged();
  void changed();

private:
  enum class State { Loading, Loaded, Failed };
  struct Answer {
    ItemContents contents;
    std::optional<QString> error;
  };

  void take();
  void show(int turn, Answer answer);
  static Flow<ItemContents> sorted(Flow<ArchiveDetails> details);
  static Flow<> ask(std::weak_ptr<bool> alive, ItemModel& self, Flow<ArchiveDetails> details,
                    WorkerStrand strand, int turn);
  const ItemContents& contents() const { return m_files.contents(); }
  MediaItem known() const;                    // with what the record adds
  std::optional<QUrl> licenceAddress() const; // nothing unless a browser should open it

  Services m_services;
  FlowGroup m_flows;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
  MediaItem m_item; // as it was selected
  ItemFiles m_files{nullptr};
  State m_state = State::Loading;
  QString m_error;
  int m_turn = 0; // answers of earlier ones come too late
};

} // namespace vellum::ui
