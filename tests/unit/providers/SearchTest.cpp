#include "Shown.h"
#include "net/NetError.h"
#include "providers/ProviderError.h"
#include "providers/ProviderRegistry.h"
#include "providers/SearchAggregator.h"
#include "providers/SearchMerge.h"
#include "providers/TorznabParser.h"
#include "support/RunFlow.h"
#include "support/ScriptedTransport.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>

namespace vellum::test {

using namespace world;
namespace {

using State = ProviderStatus::State;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

TorrentResult row(const char* hash, const char* source, std::optional<qint64> seeders = {}) {
  TorrentResult result;
  result.id = result.title = text(source) + text(hash);
  result.infoHash = text(hash);
  result.sources = {text(source)};
  result.seeders = seeders;
  return result;
}

TEST(SearchMerge, FoldsRowsOfOneHash) {
  TorrentResult late = row("AB", "B", 7), later = row("Ab", "A"), item;
  late.size = late.leechers = 1;
  late.magnet = text("magnet:?");
  late.torrentURL = late.pageURL = QUrl(text("http://t/"));
  later.size = 30;
  item.id = text("archive:ab");
  EXPECT_EQ(shown(mergeResults(
                {row("ab", "C", 5), item, late, row("cd", "A"), later, row("ab", "C", 6), item})),
            "Cab; Cab; A,B,C; size=1; seeders=7; leechers=1; hash=ab; torrent=http://t/; "
            "page=http://t/; magnet=magnet:?\narchive:ab; ; \nAcd; Acd; A; hash=cd");
}

// A provider that answers, off the main thread, when it is told to.
struct GatedProvider final : TorrentSearchProvider {
  using Outcome = std::function<TorrentResults()>;
  GatedProvider(const char* name, Outcome answer)
      : TorrentSearchProvider({.name = text(name), .baseURL = {}, .apiKey = {}, .mirrors = {}}),
        outcome(std::move(answer)) {}

  Flow<TorrentResults> search(QString query) const override {
    EXPECT_NE(QThread::currentThread(), QCoreApplication::instance()->thread());
    EXPECT_EQ(query, query.trimmed());
    ++running;
    const auto leaving = std::shared_ptr<void>(nullptr, [this](void*) { --running; });
    while (!open) co_await sleepFor(std::chrono::milliseconds(1));
    co_return outcome();
  }

  const Outcome outcome;
  mutable std::atomic<bool> open = false;
  mutable std::atomic<int> running = 0;
};

struct SearchAggregatorTest : testing::Test, MainThread {
  std::shared_ptr<GatedProvider> provider(const char* name, GatedProvider::Outcome outcome) {
    auto made = std::make_shared<GatedProvider>(name, std::move(outcome));
    providers.push_back(made);
    return made;
  }
  const ProviderStatus& status(std::size_t index) const { return aggregator->statuses()[index]; }
  bool finished() {
    return turnUntil([&] { return !aggregator->isSearching(); });
  }

  IoPool pool;
  TorrentSearchProviders providers;
  std::optional<SearchAggregator> aggregator{std::in_place, main, pool};
};

TEST_F(SearchAggregatorTest, ShowsResultsAsEachProviderAnswers) {
  const auto slow = provider("A", [] { return TorrentResults{row("ab", "A", 1)}; });
  const auto quick = provider("B", [] {
    return TorrentResults{row("AB", "B", 9), row("cd", "B")};
  });
  aggregator->search(text("  words "), providers);
  quick->open = true;
  ASSERT_TRUE(turnUntil([&] { return status(1).state == State::Ok; }));
  EXPECT_TRUE(aggregator->isSearching() && status(0).state == State::Pending);
  slow->open = true;
  ASSERT_TRUE(finished());
  EXPECT_EQ(shown(aggregator->results()),
            "Aab; Aab; A,B; seeders=9; hash=ab\nBcd; Bcd; B; hash=cd");
  EXPECT_EQ(status(1).count, 2U);
  slow->open = false; // what it found before is of the search before
  aggregator->search(text("words"), providers);
  ASSERT_TRUE(turnUntil([&] { return status(1).state == State::Ok; }));
  EXPECT_EQ(shown(aggregator->results()), "BAB; BAB; B; seeders=9; hash=AB\nBcd; Bcd; B; hash=cd");
}

TEST_F(SearchAggregatorTest, AFailureCostsItsOwnRow) {
  const auto throws = [&](auto error) {
    provider("P", [error]() -> TorrentResults { throw error; })->open = true;
  };
  throws(ProviderError::notConfigured(text("P")));
  throws(NetError::timedOut());
  throws(NetError::http(500));
  throws(IndexerError(1, text("Wrong key")));
  provider("good", [] { return TorrentResults{row("ab", "A")}; })->open = true;
  aggregator->search(text("x"), providers);
  ASSERT_TRUE(finished());
  std::string failures;
  for (const ProviderStatus& one : aggregator->statuses())
    if (one.state == State::Failed)
      failures += one.text.toStdString() + (one.offersSettings ? " (settings)" : "") + '\n';
  EXPECT_EQ(failures, "P has no address yet. Set one in Settings → Providers (settings)\n"
                      "Timed out\nHTTP 500\nWrong key\n");
  EXPECT_EQ(aggregator->results().size(), 1U);
  aggregator->search(text("y"), {});
  EXPECT_FALSE(aggregator->isSearching());
  EXPECT_TRUE(aggregator->results().empty() && aggregator->statuses().empty());
}

TEST_F(SearchAggregatorTest, ASupersededSearchNeverWrites) {
  const auto answer = [] { return TorrentResults{row("ab", "A")}; };
  const auto stuck = provider("stuck", answer), late = provider("late", answer);
  const auto areRunning = [&](int each) {
    return turnUntil([&] { return stuck->running == each && late->running == each; });
  };
  aggregator->search(text("first"), providers);
  ASSERT_TRUE(areRunning(1));
  late->open = true; // its answer is under way when the search is superseded
  while (late->running != 0) std::this_thread::yield();
  late->open = false;
  aggregator->search(text("second"), providers);
  EXPECT_TRUE(areRunning(1));
  QCoreApplication::processEvents();
  for (const ProviderStatus& one : aggregator->statuses()) EXPECT_EQ(one.state, State::Pending);

  aggregator->search(text(" \n"), {}); // cancels, and leaves all that is shown as it stands
  EXPECT_TRUE(areRunning(0));
  EXPECT_TRUE(aggregator->isSearching() && aggregator->results().empty());
  EXPECT_EQ(status(0).state, State::Pending);
  EXPECT_EQ(aggregator->lastQuery(), text("second"));

  aggregator->search(text("third"), providers);
  ASSERT_TRUE(areRunning(1));
  aggregator.reset();
  EXPECT_TRUE(areRunning(0));
}

TEST(ProviderRegistry, KeepsItsListInTheSettings) {
  PreferenceStore memory;
  SettingsStore settings(memory);
  settings.setProviders({});
  ScriptedTransport net;
  net.hosts[text("h")] = reply("[{\"name\":\"n\",\"info_hash\":\"" + QByteArray(40, 'a') + "\"}]");
  const FetchData fetch = [](QUrl, std::chrono::milliseconds) -> Flow<QByteArray> {
    co_return R"({"response":{"docs":[{"identifier":"i","title":"t","year":1,"licenseurl":"l"}]}})";
  };
  ProviderRegistry registry(settings, memory, net.transport(), ArchiveOrgProvider(fetch));
  int changes = 0;
  QObject::connect(&registry, &ProviderRegistry::changed, &registry, [&] { ++changes; });
  ProviderConfig indexer, catalog;
  indexer.name = text("I");
  indexer.kind = ProviderKind::Apibay;
  indexer.baseURL = text("http://h");
  catalog.name = text("C");
  registry.add(indexer);
  registry.add(catalog);
  registry.setEnabled(QUuid::createUuid(), false);
  const auto enabled = registry.enabledProviders();
  ASSERT_EQ(enabled.size(), 2U);
  EXPECT_EQ(runFlow(enabled[0]->search(text("x"))).front().sources, QStringList(text("I")));
  EXPECT_EQ(shown(runFlow(enabled[1]->search(text("x")))),
            "archive:i; t; C; archive=i; page=https://archive.org/details/i; year=1; license=l");
  registry.setEnabled(indexer.id, false);
  registry.remove(catalog.id);
  EXPECT_TRUE(registry.enabledProviders().empty() && settings.providers().size() == 1);
  EXPECT_EQ(changes, 4);
}

} // namespace
} // namespace vellum::test
