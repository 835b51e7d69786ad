#include "app/CatalogState.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>
#include <map>
#include <mutex>

namespace vellum::test {

using namespace world;
namespace {

QString text(const char* latin1) { return QString::fromLatin1(latin1); }

MediaItems items(const char* id, const QStringList& subjects = {}) {
  MediaItem item;
  item.id = text(id);
  item.subjects = subjects;
  return {item};
}

struct CatalogStateTest : testing::Test, MainThread {
  // What the catalog answers, by the sort or the text that is asked for; everything else fails.
  std::map<QString, MediaItems> answers;
  std::map<QString, std::atomic<bool>> held; // answers that wait until it is false
  std::mutex mutex;                          // guards asked and wasOnMain
  std::vector<CatalogQuery> asked;
  bool wasOnMain = false;
  std::atomic<int> answered = 0; // of those that were found
  std::atomic<int> running = 0;

  static Flow<MediaItems> answer(CatalogStateTest& self, CatalogQuery query) {
    {
      const std::lock_guard lock(self.mutex);
      self.asked.push_back(query);
      self.wasOnMain = self.wasOnMain || self.main.isCurrentThread();
    }
    ++self.running;
    const auto leave = qScopeGuard([&] { --self.running; });
    const QString key = query.text.value_or(query.extra.value_or(query.sort));
    const auto gate = self.held.find(key);
    while (gate != self.held.end() && gate->second) co_await sleepFor(std::chrono::milliseconds(1));
    if (!self.answers.contains(key)) throw NetError::platform(NetError::Reason::Other, key);
    ++self.answered;
    co_return self.answers.at(key);
  }
  bool loaded() {
    return turnUntil([&] { return !state->homeLoading(); });
  }

  IoPool pool;
  const CatalogState::Search search = [this](CatalogQuery query) {
    return answer(*this, std::move(query));
  };
  std::optional<CatalogState> state{std::in_place, main, pool, search};
};

TEST_F(CatalogStateTest, LoadsBothShelvesOnce) {
  const QString featured = text("collection:(feature_films)"), popular = text("week desc");
  state->loadHome();
  EXPECT_TRUE(state->homeLoading());
  ASSERT_TRUE(loaded());
  EXPECT_EQ(state->homeError(), popular); // the second failure overwrites the first
  std::sort(asked.begin(), asked.end(), [](auto& a, auto& b) { return a.sort < b.sort; });
  EXPECT_EQ(asked, (std::vector<CatalogQuery>{{{}, featured, text("downloads desc"), 24, 1},
                                              {{}, {}, popular, 24, 1}}));

  answers[popular] = items("p");
  held[featured] = true; // the first shelf is shown first, whichever comes first
  state->loadHome();
  EXPECT_FALSE(state->homeError());
  held[featured] = false;
  ASSERT_TRUE(loaded());
  EXPECT_EQ(state->homeError(), featured);
  EXPECT_EQ(state->popular(), items("p"));

  answers[featured] = items("f");
  answers.erase(popular);
  state->loadHome();
  ASSERT_TRUE(loaded());
  EXPECT_EQ(state->featured(), items("f"));
  EXPECT_EQ(state->popular(), items("p")); // a failure leaves what was there
  state->loadHome();
  EXPECT_FALSE(state->homeLoading());
  EXPECT_EQ(asked.size(), 6U);
  EXPECT_FALSE(wasOnMain);
}

TEST_F(CatalogStateTest, SearchesAndBrowsesCollections) {
  const auto ended = [&] { return turnUntil([&] { return !state->searching(); }); };
  answers[text("a b")] = items("found");
  state->searchFor(text(" a b\n"));
  ASSERT_TRUE(ended());
  EXPECT_EQ(state->searchResults(), items("found"));
  EXPECT_EQ(asked.back(), (CatalogQuery{text("a b"), {}, text("downloads desc"), 60, 1}));
  state->setSearchQuery(text("  "));
  state->runSearch();
  EXPECT_FALSE(state->searching());
  EXPECT_EQ(state->searchResults(), items("found"));
  state->searchFor(text("unknown"));
  ASSERT_TRUE(ended());
  EXPECT_EQ(state->searchError(), text("unknown"));
  EXPECT_TRUE(state->searchResults().empty());

  const auto collections = CatalogState::collections();
  QStringList table;
  for (const auto& [id, title, query] : collections)
    table += id + u'=' + title + u'=' + query.mid(QStringLiteral("collection:").size());
  EXPECT_EQ(table.join(u' '),
            text("feature_films=Feature Films=(feature_films) silent=Silent Films=(silent_films) "
                 "noir=Film Noir=(film_noir) scifi=Sci-Fi & Horror=(SciFi_Horror) "
                 "classic_tv=Classic TV=(classic_tv) animation=Animation=(animationandcartoons) "
                 "prelinger=Prelinger Archives=(prelinger) comedy=Comedy=(comedy_films)"));
  answers[collections[3].query] = items("scifi");
  for (const std::size_t index : {3U, 4U}) {
    state->loadCollection(collections[index]);
    EXPECT_EQ(state->collection(), collections[index]);
    ASSERT_TRUE(turnUntil([&] { return !state->discoverLoading(); }));
    EXPECT_EQ(asked.back(),
              (CatalogQuery{{}, collections[index].query, text("downloads desc"), 60, 1}));
    EXPECT_EQ(state->discoverResults(), index == 3 ? items("scifi") : MediaItems());
  }
}

TEST_F(CatalogStateTest, NobodyIsToldOnceTheStateIsGone) {
  answers[text("after")] = items("after");
  held[text("slow")] = true;
  state->searchFor(text("slow"));
  ASSERT_TRUE(turnUntil([&] { return running == 1; }));
  state.emplace(main, pool, search); // in the same place, where it would hear what is not for it
  ASSERT_TRUE(turnUntil([&] { return running == 0; }));
  state->loadCollection({{}, {}, text("after")}); // whose answer comes behind it
  ASSERT_TRUE(turnUntil([&] { return !state->discoverLoading(); }));
  EXPECT_EQ(state->discoverResults(), items("after"));
  EXPECT_FALSE(state->searchError());
}

TEST_F(CatalogStateTest, ShowsTheChosenCollectionWhicheverAnswersFirst) {
  const auto collections = CatalogState::collections();
  const QString left = collections[0].query, chosen = collections[1].query;
  answers = {{left, items("left")}, {chosen, items("chosen")}, {text("after"), items("after")}};
  for (const bool leftIsFirst : {true, false}) {
    held[left] = held[chosen] = true;
    answered = 0;
    state->loadCollection(collections[0]);
    state->loadCollection(collections[1]);
    held[leftIsFirst ? left : chosen] = false;
    ASSERT_TRUE(turnUntil([&] { return answered == 1; }));
    state->searchFor(text("after")); // whose answer comes behind it
    ASSERT_TRUE(turnUntil([&] { return !state->searching(); }));
    EXPECT_EQ(state->discoverLoading(), leftIsFirst);
    EXPECT_NE(state->discoverResults(), items("left"));
    held[leftIsFirst ? chosen : left] = false;
    ASSERT_TRUE(turnUntil([&] { return answered == 3 && !state->discoverLoading(); }));
    state->searchFor(text("after"));
    ASSERT_TRUE(turnUntil([&] { return !state->searching(); }));
    EXPECT_EQ(state->discoverResults(), items("chosen"));
  }
}

TEST_F(CatalogStateTest, SuggestsTheMostFrequentSubjects) {
  const QString longest(23, u'x');
  answers[text("collection:(feature_films)")] = items(
      "f", {QString(500, u' ') + text("Drama"), text("ab"), longest, longest + u'x', text("noir")});
  answers[text("week desc")] =
      items("p", {text(" drama "), text("Noir"), text("DRAMA"), text("abc"),
                  QString::fromUtf8("cafe\xcc\x81") + QString(19, u'y')});
  state->loadHome();
  ASSERT_TRUE(loaded());
  EXPECT_EQ(state->suggestions().join(u' '), text("drama noir ") + longest +
                                                 QString::fromUtf8(" abc cafe\xcc\x81") +
                                                 QString(19, u'y'));

  QStringList many(100, text("ab")); // too short to be one; what follows so many is left out
  many[0] = text("first");
  many.append(text("left out"));
  for (char letter = 'a'; letter <= 'k'; ++letter)
    answers[text("week desc")][0].subjects += QString(3, QLatin1Char(letter));
  answers[text("collection:(feature_films)")] = items("f", many);
  state.emplace(main, pool, search);
  state->loadHome();
  ASSERT_TRUE(loaded());
  EXPECT_EQ(state->suggestions().join(u' '), text("drama first noir abc ") +
                                                 QString::fromUtf8("cafe\xcc\x81") +
                                                 QString(19, u'y') + text(" aaa bbb ccc ddd eee"));
}

TEST_F(CatalogStateTest, RemembersWhatWasViewedOfTheCatalog) {
  HistoryEntries history(35);
  for (std::size_t i = 0; i < history.size(); ++i) {
    history[i].key = QString::number(i);
    history[i].isLocal = i % 7 == 0;
  }
  const HistoryEntries recent = CatalogState::recentlyViewed(history);
  ASSERT_EQ(recent.size(), 20U);
  EXPECT_EQ(recent.front().key, text("1"));
  EXPECT_EQ(recent.back().key, text("23"));
}

} // namespace
} // namespace vellum::test
