#include "ui/torrents/TorrentTable.h"
#include "base/Text.h"
#include <algorithm>

namespace vellum::ui {

namespace {

QString countOrDash(const std::optional<qint64>& value) {
  return value ? QString::number(*value) : QStringLiteral("—");
}

QString stateName(RowState::Kind kind) {
  switch (kind) {
  case RowState::Kind::Failed: return QStringLiteral("failed");
  case RowState::Kind::Starting: return QStringLiteral("starting");
  case RowState::Kind::Playing: return QStringLiteral("playing");
  }
  return {};
}

} // namespace

TorrentTable::TorrentTable(QObject* parent) : QAbstractListModel(parent) {
  connect(&m_reading, &QTimer::timeout, this, [this] {
    if (!m_list.readSome()) m_reading.stop();
  });
}

int TorrentTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(m_shown.size());
}

QVariant TorrentTable::data(const QModelIndex& index, int role) const {
  const bool isShown = index.isValid() && index.row() < rowCount();
  // While results are replaced, a view may still ask for a row that has gone.
  if (!isShown || m_shown[std::size_t(index.row())] >= m_list.rows().size()) return {};
  const ResultRow& shown = row(index.row());
  const TorrentResult& result = shown.result;
  const auto state = m_states.constFind(rowKey(result));
  const bool hasState = state != m_states.constEnd();
  switch (role) {
  case KeyRole: return rowKey(result);
  case Qt::DisplayRole:
  case TitleRole: return printable(result.title);
  case SizeRole: return formatByteCount(result.sizeSort());
  case SeedsRole: return countOrDash(result.seeders);
  case PeersRole: return countOrDash(result.leechers);
  case QualityRole: return shown.quality();
  case FormatRole: return shown.format();
  case SourceRole: return printable(shown.sources());
  case NoteRole: return noteOf(result);
  case PlayableRole: return isPlayable(result);
  case PlayStateRole: return hasState ? stateName(state->kind) : QString();
  case FailureRole: return hasState ? state->text : QString();
  case HasVariantsRole: return m_list.hasVariants(result);
  case SelectedRole: return m_selection.contains(rowKey(result));
  default: return {};
  }
}

QHash<int, QByteArray> TorrentTable::roleNames() const {
  return {{KeyRole, "key"},
          {TitleRole, "title"},
          {SizeRole, "size"},
          {SeedsRole, "seeds"},
          {PeersRole, "peers"},
          {QualityRole, "quality"},
          {FormatRole, "format"},
          {SourceRole, "source"},
          {NoteRole, "note"},
          {PlayableRole, "playable"},
          {PlayStateRole, "playState"},
          {FailureRole, "failure"},
          {HasVariantsRole, "hasVariants"},
          {SelectedRole, "selected"}};
}

QString TorrentTable::noteOf(const TorrentResult& result) {
  if (!result.archiveID) return {};
  return result.license ? tr("Licensed: %1").arg(printable(*result.license))
                        : tr("Vidarium catalog item · license not stated");
}

QString TorrentTable::countText() const {
  return tr("%1 of %2 results").arg(QString::number(rowCount()), QString::number(total()));
}

int TorrentTable::indexOf(const QString& key) const {
  if (key.isEmpty()) return -1;
  for (int i = 0; i < rowCount(); ++i)
    if (rowKey(row(i).result) == key) return i;
  return -1;
}

const TorrentResult* TorrentTable::result(const QString& key) const {
  for (const ResultRow& one : m_list.rows())
    if (rowKey(one.result) == key) return &one.result;
  return nullptr;
}

void TorrentTable::setResults(const TorrentResults& results) {
  // The rows that are shown are indices into the list: the two change together.
  m_list.setResults(results);
  m_reading.start();
  update();
}

void TorrentTable::setRowStates(const QHash<QString, RowState>& states) {
  m_states = states;
  if (rowCount() > 0)
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {PlayStateRole, FailureRole});
}

void TorrentTable::setFilter(const ResultFilter& filter) {
  if (m_filter == filter) return;
  m_filter = filter;
  update();
}

void TorrentTable::setOrder(const ResultOrder& order) {
  if (m_order == order) return;
  m_order = order;
  update();
}

void TorrentTable::update() {
  auto shown = m_list.shown(m_filter, m_order);
  const int before = rowCount();
  const int after = int(shown.size());
  if (after < before) {
    beginRemoveRows({}, after, before - 1);
    m_shown = std::move(shown);
    endRemoveRows();
  } else if (after > before) {
    beginInsertRows({}, before, after - 1);
    m_shown = std::move(shown);
    endInsertRows();
  } else {
    m_shown = std::move(shown);
  }
  if (after > 0) Q_EMIT dataChanged(index(0), index(after - 1));
  m_currentRow = indexOf(m_selection.current());
  Q_EMIT changed();
  Q_EMIT currentChanged();
}

RowSelection::Rows TorrentTable::keys() const {
  return {[this](int index) { return rowKey(row(index).result); },
          [this](const QString& key) { return indexOf(key); }};
}

void TorrentTable::pick(int index, PickKind how) {
  if (rowCount() == 0) return;
  m_currentRow = std::clamp(index, 0, rowCount() - 1);
  m_selection.pick(m_currentRow, static_cast<RowSelection::Pick>(how), keys());
  selected();
  Q_EMIT currentChanged();
}

void TorrentTable::pickAll() {
  m_selection.pickAll(rowCount(), keys());
  selected();
}

void TorrentTable::selected() {
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {SelectedRole});
}

} // namespace vellum::ui
