#include "ui/catalog/ItemModel.h"
#include "base/Text.h"
#include "ui/catalog/MediaRows.h"

namespace vellum::ui {

ItemModel::ItemModel(Services services)
    : m_services(std::move(services)), m_flows(m_services.main.executor()) {
  connect(&m_services.navigation, &Navigation::selectedItemChanged, this, &ItemModel::take);
  take();
}

ItemModel::~ItemModel() { m_flows.cancelAll(); }

void ItemModel::take() {
  ++m_turn;
  m_flows.cancelAll();
  if (const auto& item = m_services.navigation.selectedItem()) {
    m_item = *item;
    m_state = State::Loading;
    m_error.clear();
    m_files.setContents({});
    m_flows.spawn(ask(m_alive, *this, m_services.details(m_item.id),
                      m_services.pool.makeWorkerStrand(), m_turn));
    Q_EMIT changed();
  }
  Q_EMIT shownChanged();
}

Flow<ItemContents> ItemModel::sorted(Flow<ArchiveDetails> details) {
  co_return ItemContents(co_await std::move(details));
}

Flow<> ItemModel::ask(std::weak_ptr<bool> alive, ItemModel& self, Flow<ArchiveDetails> details,
                      WorkerStrand strand, int turn) {
  Answer answer;
  try {
    answer.contents = co_await flowOn(strand, sorted(std::move(details)));
  } catch (const std::exception& error) {
    answer.error = QString::fromUtf8(error.what());
  }
  if (!alive.expired()) self.show(turn, std::move(answer));
}

void ItemModel::show(int turn, Answer answer) {
  if (turn != m_turn) return;
  m_state = answer.error ? State::Failed : State::Loaded;
  m_error = answer.error.value_or(QString());
  m_files.setContents(std::move(answer.contents));
  Q_EMIT changed();
}

// One that comes from elsewhere has little more than its name until the record has come.
MediaItem ItemModel::known() const {
  MediaItem item = m_item;
  if (m_state != State::Loaded) return item;
  const MediaItem& record = contents().item;
  if (item.title.isEmpty()) item.title = record.title;
  if (!item.year) item.year = record.year;
  if (!item.creator) item.creator = record.creator;
  if (!item.summary) item.summary = record.summary;
  if (!item.licenseURL) item.licenseURL = record.licenseURL;
  return item;
}

QString ItemModel::title() const {
  const QString title = oneLine(known().title);
  return title.isEmpty() ? oneLine(m_item.id) : title;
}
QString ItemModel::byline() const { return ui::byline(known()); }

QString ItemModel::summary() const {
  QStringList lines =
      shortened(known().summary.value_or(QString()), kLongestSummary).trimmed().split(u'\n');
  for (QString& line : lines) line = printable(line.trimmed());
  return lines.join(u'\n');
}

QString ItemModel::licence() const { return oneLine(known().licenseURL.value_or(QString())); }
bool ItemModel::licenceIsLink() const { return licenceAddress().has_value(); }
std::optional<QUrl> ItemModel::licenceAddress() const {
  return webAddress(known().licenseURL.value_or(QString()).trimmed());
}

QString ItemModel::errorText() const {
  if (m_state != State::Failed) return {};
  return tr("Couldn't load item files: %1").arg(oneLine(m_error));
}

QString ItemModel::warning() const {
  if (m_state != State::Loaded) return {};
  switch (contents().warning) {
  case ItemWarning::Restricted: return tr("This item is access-restricted and can't be streamed.");
  case ItemWarning::NoVideo: return tr("No video files found in this item.");
  case ItemWarning::DownloadOnly:
    return tr("No Mac-compatible stream (MP4/M4V/MOV) is available. Other formats can be "
              "downloaded.");
  case ItemWarning::None: break;
  }
  return {};
}

QString ItemModel::subtitlesText() const {
  if (contents().subtitles.empty()) return {};
  return tr("%n subtitle file(s) will be available in the player.", nullptr,
            int(contents().subtitles.size()));
}

void ItemModel::play(int row) {
  if (!m_files.canPlay(row)) return;
  // Copies: playing closes the page.
  const ArchiveFile file = *m_files.file(row);
  const ArchiveFiles subtitles = contents().subtitles;
  const MediaItem item = m_item;
  m_services.entries.play(file, item, subtitles);
}

void ItemModel::save(int row) {
  if (const ArchiveFile* file = m_files.file(row)) m_services.download(ArchiveFile(*file), m_item);
}

void ItemModel::inspectTorrent() {
  if (contents().torrent) m_services.links.inspectTorrentUrl(contents().torrent->url);
}

void ItemModel::openItemPage() { m_services.openPage(m_item.pageURL()); }
void ItemModel::openLicence() {
  if (const auto address = licenceAddress()) m_services.openPage(*address);
}

void ItemModel::close() {
  if (isShown()) m_services.navigation.setSelectedItem(std::nullopt);
}

} // namespace vellum::ui
