#include "ui/manage/ProviderRowModel.h"
#include "providers/ProviderURL.h"
#include <QRegularExpression>
#include <algorithm>

namespace vellum::ui {

ProviderRowModel::ProviderRowModel(const Services& services, ProviderConfig config)
    : m_services(services), m_config(std::move(config)), m_base(m_config.baseURL),
      m_mirrorsText(m_config.mirrors.join(u'\n')), m_flows(services.main.executor()) {}

ProviderRowModel::~ProviderRowModel() {
  m_alive.reset();
  m_flows.cancelAll();
}

void ProviderRowModel::setConfig(const ProviderConfig& config) {
  if (m_config == config) return;
  m_config = config;
  Q_EMIT configChanged();
}

QString ProviderRowModel::subtitle() const {
  const QString kind = label(m_config.kind);
  if (!isEditable()) return kind;
  return kind + QStringLiteral(" · ") +
         (m_config.baseURL.isEmpty() ? tr("no address set") : m_config.baseURL);
}

// An empty one is valid, so that an address can be cleared.
bool ProviderRowModel::isBaseValid() const {
  return m_base.isEmpty() || ProviderURL::validate(m_base);
}

bool ProviderRowModel::isBasePlain() const {
  return m_base.trimmed().startsWith(QLatin1String("http://"));
}

QStringList ProviderRowModel::mirrorLines(bool valid) const {
  static const QRegularExpression lineEnd(QStringLiteral("\\R"));
  QStringList lines;
  const auto typed = m_mirrorsText.split(lineEnd);
  for (const QString& one : typed) {
    const QString line = one.trimmed();
    if (!line.isEmpty() && ProviderURL::validate(line).has_value() == valid) lines.append(line);
  }
  return lines;
}

QStringList ProviderRowModel::invalidMirrors() const { return mirrorLines(false); }

QVariantList ProviderRowModel::results() const {
  QVariantList list;
  for (const MirrorHealth& line : m_results) {
    const char* state = !line.reachable ? "failed" : line.formatOK ? "ok" : "doubtful";
    const QString detail = line.millis
                               ? tr("%1 · %2 ms").arg(line.detail, QString::number(*line.millis))
                               : line.detail;
    list.append(QVariantMap{{QStringLiteral("state"), QLatin1String(state)},
                            {QStringLiteral("url"), line.url},
                            {QStringLiteral("detail"), detail}});
  }
  return list;
}

QString ProviderRowModel::lastWorkingHost() const {
  const auto address = ProviderClient::lastWorking(m_services.memory, m_config.id);
  return address ? QUrl(*address).host() : QString();
}

void ProviderRowModel::setEnabled(bool enabled) {
  m_services.registry.setEnabled(m_config.id, enabled);
}

void ProviderRowModel::setApiKey(const QString& key) {
  ProviderConfig config = stored();
  if (config.apiKey == key) return;
  config.apiKey = key;
  m_services.settings.update(config);
}

void ProviderRowModel::setBase(const QString& base) {
  if (m_base == base) return;
  m_base = base;
  Q_EMIT baseChanged();
}

void ProviderRowModel::setMirrorsText(const QString& text) {
  if (m_mirrorsText == text) return;
  m_mirrorsText = text;
  Q_EMIT mirrorsTextChanged();
}

void ProviderRowModel::setExpanded(bool expanded) {
  if (m_expanded == expanded) return;
  m_expanded = expanded;
  Q_EMIT expandedChanged();
}

void ProviderRowModel::edit() {
  if (!isEditable()) return;
  setExpanded(true);
  // A search may have found another address since.
  Q_EMIT lastWorkingHostChanged();
}

void ProviderRowModel::done() {
  commit();
  setExpanded(false);
}

ProviderConfig ProviderRowModel::stored() const {
  const auto& providers = m_services.settings.providers();
  const auto found =
      std::find_if(providers.begin(), providers.end(),
                   [this](const ProviderConfig& config) { return config.id == m_config.id; });
  return found == providers.end() ? m_config : *found;
}

void ProviderRowModel::commit() {
  if (!isEditable() || !isBaseValid()) return;
  const ProviderConfig before = stored();
  ProviderConfig config = before;
  config.baseURL = m_base.trimmed();
  config.mirrors = mirrorLines(true);
  if (config != before) m_services.settings.update(config);
}

void ProviderRowModel::test() {
  if (!isEditable() || m_testing) return;
  commit();
  m_testing = true;
  m_results.clear();
  Q_EMIT testChanged();
  m_flows.spawn(check(stored(), m_services, m_alive, this));
}

Flow<> ProviderRowModel::check(ProviderConfig config, Services services, std::weak_ptr<bool> alive,
                               ProviderRowModel* row) {
  auto lines = co_await flowOn(services.pool.makeWorkerStrand(),
                               ProviderHealthChecker::check(std::move(config), services.transport,
                                                            services.memory, services.clock));
  if (alive.expired()) co_return;
  row->m_results = std::move(lines);
  row->m_testing = false;
  Q_EMIT row->testChanged();
  Q_EMIT row->lastWorkingHostChanged();
}

void ProviderRowModel::remove() {
  if (isEditable()) m_services.registry.remove(m_config.id);
}

} // namespace vellum::ui
