#include "ui/torrents/InspectorModel.h"
#include "base/Text.h"
#include "streaming/VideoFileSelector.h"

namespace vellum::ui {

namespace {

// Asked about a file alone, the selector leaves it out neither for its size nor for its neighbours.
QString kindOf(const TorrentFileEntry& file) {
  if (!VideoFileSelector::candidates({file}).empty()) return QStringLiteral("video");
  if (!VideoFileSelector::subtitles({file}).empty()) return QStringLiteral("subtitles");
  return QStringLiteral("other");
}

} // namespace

InspectorModel::InspectorModel(Services services) : m_services(std::move(services)) {
  connect(&m_services.navigation, &Navigation::inspectorChanged, this, &InspectorModel::take);
  take();
}

void InspectorModel::take() {
  if (const auto& info = m_services.navigation.inspector()) {
    beginResetModel();
    m_info = *info;
    endResetModel();
    Q_EMIT infoChanged();
  }
  Q_EMIT shownChanged();
}

int InspectorModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(m_info.files.size());
}

QVariant InspectorModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const TorrentFileEntry& file = m_info.files[std::size_t(index.row())];
  switch (role) {
  case Qt::DisplayRole:
  case NameRole: return printable(file.path);
  case SizeRole: return formatByteCount(file.size);
  case KindRole: return kindOf(file);
  default: return {};
  }
}

QHash<int, QByteArray> InspectorModel::roleNames() const {
  return {{NameRole, "name"}, {SizeRole, "size"}, {KindRole, "kind"}};
}

QString InspectorModel::name() const { return printable(m_info.name); }

QString InspectorModel::hashText() const { return tr("Info hash: %1").arg(m_info.infoHash); }

QString InspectorModel::countText() const {
  return QStringList{tr("%n file(s)", nullptr, int(m_info.files.size())),
                     tr("%n video", nullptr, int(m_info.videos)),
                     tr("%n tracker(s)", nullptr, int(m_info.trackers.size()))}
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
