#include "ui/torrents/TorrentSearchModel.h"
#include "models/QualityPicker.h"
#include <algorithm>
#include <span>

namespace vellum::ui {

namespace {

QVariantMap choice(const QString& text, const QVariant& value) {
  return {{QStringLiteral("text"), text}, {QStringLiteral("value"), value}};
}

// The first of them lets everything through.
QVariantList choices(std::span<const char* const> values) {
  QVariantList list;
  for (const char* value : values)
    list.append(choice(list.isEmpty() ? TorrentSearchModel::tr("Any") : QLatin1String(value),
                       QLatin1String(value)));
  return list;
}

} // namespace

// An entry of a row's menu.
struct TorrentSearchModel::Action {
  const char* id;
  QString text;
  std::function<void()> run;
};

TorrentSearchModel::TorrentSearchModel(Services services) : m_services(std::move(services)) {
  SearchAggregator& aggregator = m_services.aggregator;
  connect(&aggregator, &SearchAggregator::resultsChanged, this,
          [this] { m_table.setResults(m_services.aggregator.results()); });
  connect(&aggregator, &SearchAggregator::statusesChanged, this,
          &TorrentSearchModel::statusesChanged);
  connect(&aggregator, &SearchAggregator::isSearchingChanged, this,
          &TorrentSearchModel::emptyTextChanged);
  connect(&m_table, &TorrentTable::changed, this, &TorrentSearchModel::emptyTextChanged);
  connect(&m_services.registry, &ProviderRegistry::changed, this,
          &TorrentSearchModel::providersChanged);
  connect(&m_services.playback, &PlaybackCoordinator::rowStatesChanged, this,
          [this] { m_table.setRowStates(m_services.playback.rowStates()); });
  m_table.setResults(aggregator.results());
  m_table.setRowStates(m_services.playback.rowStates());
}

QVariantList TorrentSearchModel::statuses() const {
  QVariantList list;
  for (const ProviderStatus& status : m_services.aggregator.statuses()) {
    const auto add = [&](const char* state, const QString& text) {
      list.append(QVariantMap{{QStringLiteral("name"), status.name},
                              {QStringLiteral("state"), QLatin1String(state)},
                              {QStringLiteral("text"), text}});
    };
    switch (status.state) {
    case ProviderStatus::State::Pending: add("pending", status.name); break;
    case ProviderStatus::State::Ok:
      add("ok", tr("%1: %2").arg(status.name, QString::number(status.count)));
      break;
    case ProviderStatus::State::Failed: add("failed", tr("%1: failed").arg(status.name)); break;
    }
  }
  return list;
}

QVariantList TorrentSearchModel::banners() const {
  QVariantList list;
  for (const ProviderStatus& status : m_services.aggregator.statuses())
    if (status.state == ProviderStatus::State::Failed)
      list.append(QVariantMap{{QStringLiteral("text"), status.text},
                              {QStringLiteral("offersSettings"), status.offersSettings}});
  return list;
}

QString TorrentSearchModel::emptyText() const {
  if (m_table.rowCount() > 0) return {};
  if (isSearching()) return tr("Searching…");
  if (!m_services.aggregator.lastQuery().isEmpty()) return tr("No results.");
  return tr("Enter a search to query your enabled providers in parallel.");
}

QVariantList TorrentSearchModel::resolutions() { return choices(ResultFilter::kResolutions); }
QVariantList TorrentSearchModel::formats() { return choices(ResultFilter::kFormats); }

QVariantList TorrentSearchModel::maxSizes() {
  QVariantList list;
  for (const int value : ResultFilter::kMaxSizes)
    list.append(choice(value == 0 ? tr("Any") : tr("%1 GB").arg(value), value));
  return list;
}

template <class Change>
void TorrentSearchModel::changeFilter(Change change) {
  ResultFilter filter = m_table.filter();
  change(filter);
  m_table.setFilter(filter);
  Q_EMIT filterChanged();
}

void TorrentSearchModel::setResolution(const QString& resolution) {
  changeFilter([&](ResultFilter& filter) { filter.resolution = resolution; });
}
void TorrentSearchModel::setFormat(const QString& format) {
  changeFilter([&](ResultFilter& filter) { filter.format = format; });
}
void TorrentSearchModel::setMaxSizeGB(int gigabytes) {
  changeFilter([&](ResultFilter& filter) { filter.maxSizeGB = gigabytes; });
}
void TorrentSearchModel::showSource(const QString& source, bool shown) {
  changeFilter([&](ResultFilter& filter) {
    if (shown)
      filter.hiddenSources.remove(source);
    else
      filter.hiddenSources.insert(source);
  });
}
QStringList TorrentSearchModel::hiddenSources() const {
  QStringList list(m_table.filter().hiddenSources.begin(), m_table.filter().hiddenSources.end());
  list.sort();
  return list;
}

void TorrentSearchModel::sortBy(int column) {
  if (column < 0 || column > int(ResultColumn::Source)) return;
  const auto wanted = static_cast<ResultColumn>(column);
  const bool isText = wanted == ResultColumn::Title || wanted == ResultColumn::Source;
  const bool isSame = m_table.order().column == wanted;
  // Numbers begin with the greatest, names with the first.
  m_table.setOrder({wanted, isSame ? !m_table.order().ascending : isText});
  Q_EMIT filterChanged();
}

void TorrentSearchModel::search() {
  m_services.aggregator.search(m_query, m_services.registry.enabledProviders());
}
void TorrentSearchModel::inspectMagnet() { m_services.links.inspectMagnet(m_magnetText); }
void TorrentSearchModel::openSettings() {
  m_services.navigation.setSection(SidebarSection::Settings);
}

void TorrentSearchModel::play(const QString& key) {
  const TorrentResult* result = m_table.result(key);
  if (result != nullptr && isPlayable(*result)) playResult(TorrentResult(*result));
}

void TorrentSearchModel::playResult(const TorrentResult& result) {
  if (result.archiveID && !result.magnet && !result.infoHash) return showItem(result);
  m_services.playback.playFromSearchResult(result);
}

void TorrentSearchModel::showItem(const TorrentResult& result) const {
  MediaItem item;
  item.id = *result.archiveID;
  item.title = result.title;
  item.year = result.year;
  item.licenseURL = result.license;
  m_services.navigation.setSelectedItem(item);
}

QVariantList TorrentSearchModel::variants(const QString& key) const {
  QVariantList list;
  const TorrentResult* result = m_table.result(key);
  if (result == nullptr) return list;
  const auto found = QualityPicker::variants(*result, m_services.aggregator.results());
  if (found.size() < 2) return list;
  for (const TorrentResult& variant : found) {
    const QString seeds =
        variant.seeders ? tr("%1 seeds").arg(*variant.seeders) : tr("seeds unknown");
    list.append(QVariantMap{{QStringLiteral("id"), variant.id},
                            {QStringLiteral("text"), tr("%1 · %2").arg(variant.quality(), seeds)}});
  }
  return list;
}

void TorrentSearchModel::playVariant(const QString& key, const QString& variantId) {
  const TorrentResult* result = m_table.result(key);
  if (result == nullptr) return;
  const auto found = QualityPicker::variants(*result, m_services.aggregator.results());
  for (const TorrentResult& variant : found)
    if (variant.id == variantId)
      return m_services.playback.playFromSearchResult(variant, std::nullopt, true);
}

std::vector<TorrentSearchModel::Action>
TorrentSearchModel::actionsOf(const TorrentResult& result) const {
  std::vector<Action> list;
  const auto add = [&](bool isThere, const char* id, const QString& text, auto run) {
    if (isThere) list.push_back({id, text, run});
  };
  const Services& s = m_services;
  const QString magnet = result.magnet.value_or(QString());
  const bool isWebPage = result.pageURL && (result.pageURL->scheme() == u"http" ||
                                            result.pageURL->scheme() == u"https");
  add(result.archiveID.has_value(), "details", tr("Details & Play…"),
      [this, result] { showItem(result); });
  add(result.magnet.has_value(), "inspect", tr("Inspect Magnet"),
      [&s, magnet] { s.links.inspectMagnet(magnet); });
  add(result.magnet.has_value(), "external", tr("Open Magnet in Torrent App"),
      [&s, magnet] { s.links.openExternally(magnet); });
  add(result.magnet.has_value(), "copyMagnet", tr("Copy Magnet Link"),
      [&s, magnet] { s.copy(magnet); });
  add(result.torrentURL.has_value(), "torrent", tr("Inspect .torrent File"),
      [&s, url = result.torrentURL] { s.links.inspectTorrentUrl(*url); });
  add(isWebPage, "page", tr("Open Source Page"), [&s, url = result.pageURL] { s.openPage(*url); });
  add(result.infoHash.has_value(), "copyHash", tr("Copy Info Hash"),
      [&s, hash = result.infoHash] { s.copy(*hash); });
  return list;
}

QVariantList TorrentSearchModel::actions(const QString& key) const {
  QVariantList list;
  if (const TorrentResult* result = m_table.result(key))
    for (const Action& action : actionsOf(*result))
      list.append(QVariantMap{{QStringLiteral("id"), QLatin1String(action.id)},
                              {QStringLiteral("text"), action.text}});
  return list;
}

void TorrentSearchModel::act(const QString& key, const QString& actionId) {
  const TorrentResult* result = m_table.result(key);
  if (result == nullptr) return;
  for (const Action& action : actionsOf(*result))
    if (actionId == QLatin1String(action.id)) return action.run();
}

} // namespace vellum::ui
