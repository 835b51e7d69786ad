#include "app/CatalogState.h"
#include "app/Suggestions.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>
#include <map>

namespace vellum::test {

using namespace Qt::StringLiterals;
using namespace world;
namespace {

MediaItems items(const QString& id, const QStringList& subjects = {}) {
  MediaItem item;
  item.id = id;
  item.subjects = subjects;
  return {item};
}

struct CatalogStateTest : testing::Test, MainThread {
  // What the catalog answers, by the sort or the text that is asked for; everything else fails.
  std::map<QString, MediaItems> answers;
  std::map<QString, std::atomic<bool>> held; // answers that wait until it is false
  std::vector<CatalogQuery> asked;
  std::atomic<int> answered = 0; // or failed

  static Flow<MediaItems> answer(CatalogStateTest& self, CatalogQuery query) {
    const auto leave = qScopeGuard([&] { ++self.answered; });
    EXPECT_FALSE(self.main.isCurrentThread());
    self.asked.push_back(query);
    const QString key = query.text.value_or(query.extra.value_or(query.sort));
    const auto gate = self.held.find(key);
    while (gate != self.held.end() && gate->second) co_await sleepFor(std::chrono::milliseconds(1));
    if (!self.answers.contains(key)) throw NetError::platform(NetError::Reason::Other, key);
    co_return self.answers.at(key);
  }
  void load() {
    state.loadHome();
    EXPECT_TRUE(turnUntil([&] { return !state.homeLoading(); }));
  }
  void search(const QString& words) {
    state.searchFor(words);
    EXPECT_TRUE(turnUntil([&] { return !state.searching(); }));
  }

  IoPool pool{1, 1}; // one worker: what is asked is written in order
  CatalogState state{main, pool,
                     [this](CatalogQuery query) { return answer(*this, std::move(query)); }};
};

TEST_F(CatalogStateTest, LoadsBothShelvesOnce) {
  const QString featured = u"collection:(feature_films)"_s, popular = u"week desc"_s;
  load();
  EXPECT_EQ(state.homeError(), popular); // the second failure overwrites the first
  std::sort(asked.begin(), asked.end(), [](auto& a, auto& b) { return a.sort < b.sort; });
  EXPECT_EQ(asked, (std::vector<CatalogQuery>{{{}, featured, u"downloads desc"_s, 24, 1},
                                              {{}, {}, popular, 24, 1}}));

  answers[popular] = items(u"p"_s, {u"noir"_s});
  load();
  EXPECT_EQ(state.homeError(), featured);
  EXPECT_EQ(state.popular().front().id, u"p"_s);

  answers[featured] = items(u"f"_s, {u"drama"_s});
  answers.erase(popular);
  load();
  EXPECT_EQ(state.featured().front().id, u"f"_s);
  EXPECT_EQ(state.popular().front().id, u"p"_s); // a failure leaves what was there
  EXPECT_EQ(state.suggestions(), (QStringList{u"drama"_s, u"noir"_s}));
  const std::size_t before = asked.size();
  state.loadHome();
  EXPECT_FALSE(state.homeLoading());
  EXPECT_EQ(asked.size(), before);
}

TEST_F(CatalogStateTest, SearchesForWordsThatAreNotBlank) {
  QStringList told;
  QObject::connect(&state, &CatalogState::searchQueryChanged, &app,
                   [&] { told += state.searchQuery(); });
  search(u"unknown"_s);
  EXPECT_EQ(state.searchError(), u"unknown"_s);
  answers[u"a b"_s] = items(u"found"_s);
  search(u" a b\n"_s);
  EXPECT_EQ(state.searchResults(), items(u"found"_s));
  EXPECT_FALSE(state.searchError());
  EXPECT_EQ(asked.back(), (CatalogQuery{u"a b"_s, {}, u"downloads desc"_s, 60, 1}));
  for (int i = 0; i < 2; ++i) state.searchFor(u"  "_s);
  EXPECT_FALSE(state.searching());
  EXPECT_EQ(state.searchResults(), items(u"found"_s));
  search(u"unknown"_s);
  EXPECT_TRUE(state.searchResults().empty());
  EXPECT_EQ(told.join(u'|'), u"unknown| a b\n|  |unknown"_s);
}

TEST_F(CatalogStateTest, ShowsTheChosenCollectionWhicheverAnswersFirst) {
  const auto collections = CatalogState::collections();
  const QString left = collections[0].query, chosen = collections[1].query;
  answers = {{left, items(u"left"_s)}, {chosen, items(u"chosen"_s)}};
  for (const bool leftIsFirst : {true, false}) {
    held[left] = held[chosen] = true;
    state.loadCollection(collections[0]);
    state.loadCollection(collections[1]);
    for (const bool isLeft : {leftIsFirst, !leftIsFirst}) {
      answered = 0;
      held[isLeft ? left : chosen] = false;
      ASSERT_TRUE(turnUntil([&] { return answered == 1; }));
      search(u"whose answer comes behind it"_s);
      EXPECT_EQ(state.discoverLoading(), leftIsFirst && isLeft);
      EXPECT_NE(state.discoverResults(), items(u"left"_s));
    }
    EXPECT_EQ(state.discoverResults(), items(u"chosen"_s));
  }
  EXPECT_EQ(asked.front(), (CatalogQuery{{}, left, u"downloads desc"_s, 60, 1}));
  state.loadCollection(collections[2]); // which fails
  EXPECT_TRUE(turnUntil([&] { return !state.discoverLoading(); }));
  EXPECT_TRUE(state.discoverResults().empty());
}

TEST(Suggestions, AreTheMostFrequentSubjectsOfAllShelves) {
  const QString longest(23, u'x');
  const QString accents = (u"e"_s + QString(15, QChar(0x301))).repeated(23); // as long to a reader
  const MediaItems first =
      items(u"f"_s, {QString(500, u' ') + u"Drama"_s, u"ab"_s, accents + QChar(0x301), accents,
                     longest + u'x', longest, u"noir"_s});
  const MediaItems second = items(u"p"_s, {u" drama "_s, u"Noir"_s, u"DRAMA"_s, u"abc"_s});
  EXPECT_EQ(frequentSubjects({&first, &second}, 10),
            (QStringList{u"drama"_s, u"noir"_s, accents, longest, u"abc"_s}));
  EXPECT_EQ(frequentSubjects({&first, &second}, 1), QStringList{u"drama"_s});
}

TEST(RecentlyViewed, AreTheLatestOfTheCatalog) {
  HistoryEntries history(35);
  for (std::size_t i = 0; i < history.size(); ++i) {
    history[i].key = QString::number(i);
    history[i].isLocal = i % 7 == 0;
  }
  const HistoryEntries recent = CatalogState::recentlyViewed(history);
  ASSERT_EQ(recent.size(), 20U);
  EXPECT_EQ(recent.front().key, u"1"_s);
  EXPECT_EQ(recent.back().key, u"23"_s);
}

} // namespace
} // namespace vellum::test
