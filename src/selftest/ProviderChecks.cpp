#include "providers/ProviderError.h"
#include "providers/ProviderHealthChecker.h"
#include "providers/ProviderSearch.h"
#include "providers/ProviderURL.h"
#include "providers/ResponseClassifier.h"
#include "providers/SearchAggregator.h"
#include "selftest/Sections.h"
#include "selftest/TinyHTTP.h"
#include <algorithm>
#include <mutex>

namespace vellum::selftest {

namespace {

const char* const kDead = "https://dead.vellum.test";
const char* const kWebPage = "https://webpage.vellum.test";
const char* const kGood = "https://good.vellum.test";

// Where the resolver of names is mute, the address without a name costs all of it.
constexpr std::chrono::seconds kTimeout{3};

QByteArray movieDocument() {
  return R"({"status": "ok", "data": {"movie_count": 1, "movies": [{
    "title": "Big Buck Bunny", "year": 2008, "url": "https://good.vellum.test/movies/bunny",
    "torrents": [
      {"hash": ")" +
         QByteArray(40, 'A') +
         R"(", "quality": "720p", "type": "web", "seeds": 5, "peers": 2, "size_bytes": 1000},
      {"hash": ")" +
         QByteArray(40, 'B') +
         R"(", "quality": "1080p", "type": "web", "seeds": 9, "peers": 1, "size_bytes": 2000}
    ]}]}})";
}

// What a transport was asked for, from whichever thread.
class Log {
public:
  void add(const QString& item) {
    const std::lock_guard lock(m_lock);
    m_items += item;
  }
  QStringList items() const {
    const std::lock_guard lock(m_lock);
    return m_items;
  }

private:
  mutable std::mutex m_lock; // guards m_items
  QStringList m_items;
};

Flow<HttpResponse> scripted(Log& log, QUrl url) {
  log.add(url.host());
  if (url.host() == QUrl(text(kDead)).host())
    throw NetError::platform(NetError::Reason::HostNotFound, text("cannot find host"));
  if (url.host() == QUrl(text(kWebPage)).host())
    co_return HttpResponse{"<html><body>Checking your browser</body></html>", text("text/html"),
                           200};
  co_return HttpResponse{movieDocument(), text("application/json"), 200};
}

Transport scriptedTransport(Log& log) {
  return [&log](QUrl url) { return scripted(log, std::move(url)); };
}

ProviderConfig yts(const QStringList& addresses) {
  ProviderConfig config;
  config.name = text("YTS");
  config.kind = ProviderKind::Yts;
  config.baseURL = addresses.front();
  config.mirrors = addresses.mid(1);
  return config;
}

// A search as the program runs it: on a worker. Its results, or the error that it threw.
struct Found {
  TorrentResults results;
  std::exception_ptr error = nullptr;

  QString errorText() const {
    try {
      if (error) std::rethrow_exception(error);
    } catch (const std::exception& thrown) {
      return QString::fromUtf8(thrown.what());
    }
    return {};
  }
  // The provider's failure in the user's words; nothing if it threw none, or something else.
  std::optional<QString> providerError() const {
    try {
      if (error) std::rethrow_exception(error);
    } catch (const ProviderError& thrown) {
      return thrown.errorDescription();
    } catch (const std::exception&) {
      return std::nullopt;
    }
    return std::nullopt;
  }
};

Flow<Found> search(Runtime& runtime, ProviderConfig config, Transport transport,
                   PreferenceStore& memory) {
  Found found;
  try {
    found.results = co_await flowOn(
        runtime.pool.makeWorkerStrand(),
        ProviderSearch::run(std::move(config), text("bunny"), std::move(transport), memory));
  } catch (const std::exception& error) {
    if (isCancellation(error)) throw;
    found.error = std::current_exception();
  }
  co_return found;
}

Flow<> mirrorsInOrder(CheckList& checks, Runtime& runtime) {
  Log log;
  PreferenceStore memory; // of this run alone
  const ProviderConfig config = yts({text(kDead), text(kWebPage), text(kGood)});
  const Found first = co_await search(runtime, config, scriptedTransport(log), memory);
  if (first.error) {
    checks.check(false, text("Failover"), first.errorText());
    co_return;
  }
  checks.check(first.results.size() == 2,
               text("Failover: dead DNS + HTML mirror → third mirror parsed"),
               text("%1 results").arg(first.results.size()));
  const auto host = [](const char* address) { return QUrl(text(address)).host(); };
  checks.check(log.items() == QStringList{host(kDead), host(kWebPage), host(kGood)},
               text("Failover: tried in order"), log.items().join(text(", ")));
  checks.check(ProviderClient::lastWorking(memory, config.id) == text(kGood),
               text("Failover: last working remembered"));
  Log again;
  const Found second = co_await search(runtime, config, scriptedTransport(again), memory);
  checks.check(again.items().value(0) == host(kGood),
               text("Failover: remembered mirror tried first"),
               again.items().join(text(", ")) + second.errorText());
  checks.check(!first.results.empty() && std::ranges::all_of(first.results,
                                                             [](const TorrentResult& result) {
                                                               return result.baseTitle ==
                                                                      text("Big Buck Bunny (2008)");
                                                             }),
               text("YTS variants share a base title"));
}

// A provider with one address, and what its failure has to say.
struct Failing {
  const char* address;
  QString sentence;
  const char *name, *didNotThrow, *threwSomethingElse;
};

Flow<> failureInWords(CheckList& checks, Runtime& runtime, Failing failing) {
  Log log;
  PreferenceStore memory;
  const Found found =
      co_await search(runtime, yts({text(failing.address)}), scriptedTransport(log), memory);
  const auto said = found.providerError();
  if (!found.error)
    checks.check(false, text(failing.didNotThrow));
  else if (!said)
    checks.check(false, text(failing.threwSomethingElse), found.errorText());
  else
    checks.check(*said == failing.sentence, text(failing.name), *said);
}

Flow<> overTheRealNetwork(CheckList& checks, Runtime& runtime) {
  TinyHTTP server(runtime.pool, movieDocument());
  const auto port = server.start();
  if (!port) {
    checks.check(false, text("Local HTTP server for provider tests"));
    co_return;
  }
  PreferenceStore memory;
  const ProviderConfig config = yts({text("http://127.0.0.1:1"), text("http://nowhere.invalid"),
                                     text("http://127.0.0.1:%1").arg(*port)});
  const Found found = co_await search(runtime, config, runtime.http.transport(kTimeout), memory);
  if (found.error)
    checks.check(false, text("Real network failover"), found.errorText());
  else
    checks.check(
        found.results.size() == 2,
        text("Real network: refused + DNS failure fail over to live mirror (http loopback)"),
        text("%1 results").arg(found.results.size()));
  // Without what was remembered, which would be asked first.
  const PreferenceStore nothing;
  const auto rows =
      co_await flowOn(runtime.pool.makeWorkerStrand(),
                      ProviderHealthChecker::check(config, runtime.http.transport(kTimeout),
                                                   nothing, runtime.clock));
  QStringList details;
  for (const MirrorHealth& row : rows) details += row.detail;
  checks.check(rows.size() == 3 && !rows[0].reachable && !rows[1].reachable && rows[2].reachable &&
                   rows[2].formatOK && rows[2].millis,
               text("Test Connection reports per-mirror reachability, time and format"),
               details.join(text(" | ")));
}

// A provider that needs no network.
class StubProvider final : public TorrentSearchProvider {
public:
  StubProvider(ProviderConfig config, std::optional<ProviderError> fail = {})
      : TorrentSearchProvider(std::move(config)), m_fail(std::move(fail)) {}

  Flow<TorrentResults> search(QString) const override {
    if (m_fail) throw ProviderError(*m_fail);
    TorrentResult result;
    result.id = text("h1");
    result.title = text("Good");
    result.size = 1;
    result.seeders = 3;
    result.leechers = 1;
    result.sources = {config().name};
    co_return TorrentResults{result};
  }

private:
  const std::optional<ProviderError> m_fail;
};

} // namespace

void urlValidation(CheckList& checks) {
  const auto gives = [](const char* input) {
    return ProviderURL::validate(text(input)).has_value();
  };
  checks.check(gives("https://good.vellum.test/api"), text("URL: https with host accepted"));
  checks.check(gives("http://127.0.0.1:8080/x"), text("URL: http with port accepted"));
  for (const char* input : {"", "good.vellum.test", "ftp://good.vellum.test/x", "https://",
                            "http:// good.vellum.test", "javascript:alert(1)", "https:///path"})
    checks.check(!gives(input), text("URL: rejects '%1'").arg(text(input)));
}

void classification(CheckList& checks) {
  const auto is = [](ResponseKind kind, const char* body, const std::optional<QString>& type) {
    return ResponseClassifier::classify(QByteArray(body), type) == kind;
  };
  checks.check(is(ResponseKind::Html,
                  "<!DOCTYPE html><html><head><title>Just a moment...</title></head></html>",
                  text("text/html")),
               text("HTML page detected"));
  checks.check(is(ResponseKind::Html, "  \n<html>", {}),
               text("HTML without content-type detected"));
  checks.check(is(ResponseKind::Json, "{\"status\":\"ok\"}", text("application/json")),
               text("JSON detected"));
  checks.check(is(ResponseKind::Xml, "<?xml version=\"1.0\"?><rss/>", {}), text("XML detected"));
}

Flow<> failover(CheckList& checks, Runtime& runtime) {
  co_await mirrorsInOrder(checks, runtime);
  co_await failureInWords(checks, runtime,
                          {kWebPage,
                           text("Provider returned a web page instead of API data (YTS at %1). "
                                "Try another mirror in Settings → Providers")
                               .arg(QUrl(text(kWebPage)).host()),
                           "HTML instead of JSON → friendly message", "HTML instead of JSON throws",
                           "HTML instead of JSON"});
  co_await failureInWords(checks, runtime,
                          {kDead,
                           text("YTS unreachable at %1. Check the address in Settings → Providers")
                               .arg(QUrl(text(kDead)).host()),
                           "Unreachable banner text", "All mirrors dead throws", "Unreachable"});
  co_await overTheRealNetwork(checks, runtime);
}

Flow<> providerDownOthersSucceed(CheckList& checks, Runtime& runtime) {
  ProviderConfig working;
  working.name = text("ApiBay");
  working.kind = ProviderKind::Apibay;
  const ProviderConfig failing = yts({text(kDead)});
  const QString host = QUrl(failing.baseURL).host();
  SearchAggregator aggregator(runtime.main, runtime.pool);
  aggregator.search(text("x"),
                    {std::make_shared<StubProvider>(working),
                     std::make_shared<StubProvider>(
                         failing, ProviderError::unreachable(failing.name, host, text("gone")))});
  co_await poll(runtime, 50, [&] { return !aggregator.isSearching(); });
  const auto& statuses = aggregator.statuses();
  const auto down = std::ranges::find(statuses, failing.id, &ProviderStatus::id);
  checks.check(
      aggregator.results().size() == 1 && down != statuses.end() &&
          down->state == ProviderStatus::State::Failed &&
          down->text.contains(text("YTS unreachable at ") + host) && down->offersSettings,
      text("Provider down while others succeed (results kept, banner + Settings shortcut)"),
      down == statuses.end() ? QString() : down->text);
}

} // namespace vellum::selftest
