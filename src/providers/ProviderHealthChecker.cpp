#include "providers/ProviderHealthChecker.h"
#include "providers/ProviderParser.h"
#include <QCoreApplication>

namespace vellum {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ProviderHealthChecker)
};

MirrorHealth judged(const ProviderConfig& config, const QByteArray& body) {
  MirrorHealth health{.reachable = true};
  try {
    parseResults(config.kind, body, config.name);
    health.formatOK = true;
    health.detail = Texts::tr("Reachable, API format OK");
  } catch (const std::exception&) {
    health.detail = Texts::tr("Reachable, but the response doesn't match the expected API format");
  }
  return health;
}

MirrorHealth failed(const std::exception& error) {
  using Failure = ProviderClient::Failure;
  const auto* failure = dynamic_cast<const Failure*>(&error);
  MirrorHealth health;
  health.reachable = failure != nullptr && failure->kind() != Failure::Case::Network;
  health.detail = failure != nullptr && failure->kind() == Failure::Case::Html
                      ? Texts::tr("Provider returned a web page instead of API data")
                      : Texts::tr("Failed: %1").arg(ProviderClient::humanize(error));
  return health;
}

} // namespace

Flow<std::vector<MirrorHealth>> ProviderHealthChecker::check(ProviderConfig config,
                                                             Transport transport,
                                                             const PreferenceStore& memory,
                                                             const Clock& clock) {
  const auto request = providerRequest(config.kind, QStringLiteral("test"), config.apiKey);
  std::vector<MirrorHealth> lines;
  if (!request) {
    lines.push_back({Texts::tr("Built-in catalog"), true, std::nullopt, true,
                     Texts::tr("Vidarium catalog uses a fixed built-in host")});
    co_return lines;
  }
  const QStringList addresses = ProviderClient::candidates(config, memory);
  if (addresses.isEmpty())
    lines.push_back({config.baseURL.isEmpty() ? Texts::tr("(no address)") : config.baseURL, false,
                     std::nullopt, false, Texts::tr("Not a valid http(s) address")});
  for (const QString& address : addresses) {
    const TimePoint began = clock.now();
    QByteArray body;
    std::optional<MirrorHealth> line;
    try {
      body = co_await ProviderClient::attempt(address, *request, transport);
    } catch (const std::exception& error) {
      line = failed(error);
    }
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(clock.now() - began);
    if (!line) line = judged(config, body);
    line->url = address;
    if (line->reachable) line->millis = taken.count();
    lines.push_back(*line);
  }
  co_return lines;
}

} // namespace vellum
