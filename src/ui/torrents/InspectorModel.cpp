#include "ui/torrents/InspectorModel.h"
#include "base/Text.h"
#include "streaming/VideoFileSelector.h"
#include <algorithm>

namespace vellum::ui {

namespace {

constexpr const char* kVideo = "video";
constexpr const char* kSubtitles = "subtitles";
constexpr const char* kOther = "other";

} // namespace

InspectorModel::InspectorModel(Services services) : m_services(std::move(services)) {
  connect(&m_services.navigation, &Navigation::inspectorChanged, this, &InspectorModel::take);
  take();
}

// Asked about each file alone, the selector leaves none out for its size or its neighbours.
InspectorModel::File InspectorModel::fileOf(const TorrentFileEntry& entry) {
  const char* kind = !VideoFileSelector::candidates({entry}).empty()  ? kVideo
                     : !VideoFileSelector::subtitles({entry}).empty() ? kSubtitles
                                                                      : kOther;
  return {printable(entry.path), entry.size, kind};
}

void InspectorModel::take() {
  if (const auto& info = m_services.navigation.inspector()) {
    beginResetModel();
    m_info = *info;
    m_files.clear();
    m_files.reserve(m_info.files.size());
    for (const TorrentFileEntry& entry : m_info.files) m_files.push_back(fileOf(entry));
    m_videos = std::count_if(m_files.begin(), m_files.end(),
                             [](const File& file) { return file.kind == kVideo; });
    endResetModel();
    Q_EMIT infoChanged();
  }
  Q_EMIT shownChanged();
}

int InspectorModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(m_files.size());
}

QVariant InspectorModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const File& file = m_files[std::size_t(index.row())];
  switch (role) {
  case Qt::DisplayRole:
  case NameRole: return file.name;
  case SizeRole: return formatByteCount(file.size);
  case KindRole: return QString::fromLatin1(file.kind);
  default: return {};
  }
}

QHash<int, QByteArray> InspectorModel::roleNames() const {
  return {{NameRole, "name"}, {SizeRole, "size"}, {KindRole, "kind"}};
}

QString InspectorModel::name() const { return printable(m_info.name); }

QString InspectorModel::hashText() const { return tr("Info hash: %1").arg(m_info.infoHash); }

QString InspectorModel::countText() const {
  return QStringList{tr("%1 file(s)").arg(m_files.size()), tr("%1 video").arg(m_videos),
                     tr("%1 tracker(s)").arg(m_info.trackers.size())}
      .join(QStringLiteral(" · "));
}

void InspectorModel::copyMagnet() {
  if (m_info.magnet) m_services.copy(*m_info.magnet);
}
void InspectorModel::openMagnet() {
  if (m_info.magnet) m_services.links.openExternally(*m_info.magnet);
}
void InspectorModel::openFile() {
  if (m_info.fileUrl) m_services.links.openExternally(m_info.fileUrl->toLocalFile());
}
void InspectorModel::revealFile() {
  if (m_info.fileUrl) m_services.reveal(m_info.fileUrl->toLocalFile());
}
void InspectorModel::close() { m_services.navigation.setInspector(std::nullopt); }

} // namespace vellum::ui
