#include "app/CatalogState.h"
#include "app/Suggestions.h"
#include "net/NetError.h"
#include "world/MainThread.h"
#include <gtest/gtest.h>
#include <map>

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
  std::vector<CatalogQuery> asked;
  std::atomic<int> begun = 0, answered = 0; // or failed

  static Flow<MediaItems> answer(CatalogStateTest& self, CatalogQuery query) {
    const auto leave = qScopeGuard([&] { ++self.answered; });
    EXPECT_FALSE(self.main.isCurrentThread());
    self.asked.push_back(query);
    ++self.begun;
    const QString key = query.text.value_or(query.extra.value_or(query.sort));
    const auto gate = self.held.find(key);
    while (gate != self.held.end() && gate->second) co_await sleepFor(std::chrono::milliseconds(1));
    if (!self.answers.contains(key)) throw NetError::platform(NetError::Reason::Other, key);
    co_return self.answers.at(key);
  }
  void load() {
    state->loadHome();
    EXPECT_TRUE(turnUntil([&] { return !state->homeLoading(); }));
  }
  void search(const char* words) {
    state->searchFor(text(words));
    EXPECT_TRUE(turnUntil([&] { return !state->searching(); }));
  }

  IoPool pool{1, 1}; // one worker: what is asked is written in order
  const CatalogState::Search asks = [this](CatalogQuery query) {
    return answer(*this, std::move(query));
  };
  std::optional<CatalogState> state{std::in_place, main, pool, asks};
};

TEST_F(CatalogStateTest, LoadsBothShelvesOnce) {
  const QString featured = text("collection:(feature_films)"), popular = text("week desc");
  load();
  EXPECT_EQ(state->homeError(), popular); // the second failure overwrites the first
  std::sort(asked.begin(), asked.end(), [](auto& a, auto& b) { return a.sort < b.sort; });
  EXPECT_EQ(asked, (std::vector<CatalogQuery>{{{}, featured, text("downloads desc"), 24, 1},
                                              {{}, {}, popular, 24, 1}}));

  answers[popular] = items("p", {text("noir")});
  held[featured] = true; // the first shelf is shown first, whichever comes first
  state->loadHome();
  EXPECT_FALSE(state->homeError());
  EXPECT_TRUE(turnUntil([&] { return answered == 3; }));
  search("whose answer comes behind it");
  EXPECT_TRUE(state->homeLoading() && state->popular().empty());
  held[featured] = false;
  ASSERT_TRUE(turnUntil([&] { return !state->homeLoading(); }));
  EXPECT_EQ(state->homeError(), featured);
  EXPECT_EQ(state->popular().front().id, text("p"));

  answers[featured] = items("f", {text("drama")});
  answers.erase(popular);
  load();
  EXPECT_EQ(state->featured().front().id, text("f"));
  EXPECT_EQ(state->popular().front().id, text("p")); // a failure leaves what was there
  EXPECT_EQ(state->suggestions(), (QStringList{text("drama"), text("noir")}));
  const std::size_t before = asked.size();
  state->loadHome();
  EXPECT_FALSE(state->homeLoading());
  EXPECT_EQ(asked.size(), before);
}

TEST_F(CatalogStateTest, SearchesForWordsThatAreNotBlank) {
  QStringList told;
  QObject::connect(&*state, &CatalogState::searchQueryChanged, &app,
                   [&] { told += state->searchQuery(); });
  search("unknown");
  EXPECT_EQ(state->searchError(), text("unknown"));
  answers[text("a b")] = items("found");
  search(" a b\n");
  EXPECT_EQ(state->searchResults(), items("found"));
  EXPECT_FALSE(state->searchError());
  EXPECT_EQ(asked.back(), (CatalogQuery{text("a b"), {}, text("downloads desc"), 60, 1}));
  for (int i = 0; i < 2; ++i) state->searchFor(text("  "));
  EXPECT_FALSE(state->searching());
  EXPECT_EQ(state->searchResults(), items("found"));
  search("unknown");
  EXPECT_TRUE(state->searchResults().empty());
  EXPECT_EQ(told.join(u'|'), text("unknown| a b\n|  |unknown"));
}

TEST_F(CatalogStateTest, ShowsTheChosenCollectionWhicheverAnswersFirst) {
  const auto collections = CatalogState::collections();
  const QString left = collections[0].query, chosen = collections[1].query;
  answers = {{left, items("left")}, {chosen, items("chosen")}};
  for (const bool leftIsFirst : {true, false}) {
    held[left] = held[chosen] = true;
    state->loadCollection(collections[0]);
    state->loadCollection(collections[1]);
    for (const bool isLeft : {leftIsFirst, !leftIsFirst}) {
      answered = 0;
      held[isLeft ? left : chosen] = false;
      ASSERT_TRUE(turnUntil([&] { return answered == 1; }));
      search("whose answer comes behind it");
      EXPECT_EQ(state->discoverLoading(), leftIsFirst && isLeft);
      EXPECT_NE(state->discoverResults(), items("left"));
    }
    EXPECT_EQ(state->discoverResults(), items("chosen"));
  }
  EXPECT_EQ(asked.front(), (CatalogQuery{{}, left, text("downloads desc"), 60, 1}));
  state->loadCollection(collections[2]); // which fails
  EXPECT_TRUE(turnUntil([&] { return !state->discoverLoading(); }));
  EXPECT_TRUE(state->discoverResults().empty());
}

TEST_F(CatalogStateTest, NobodyIsToldOnceTheStateIsGone) {
  held[text("slow")] = true;
  state->searchFor(text("slow"));
  ASSERT_TRUE(turnUntil([&] { return begun == 1; }));
  state.emplace(main, pool, asks); // in the same place, where it would hear what is not for it
  ASSERT_TRUE(turnUntil([&] { return answered == 1; }));
  state->loadCollection({{}, {}, text("whose answer comes behind it")});
  ASSERT_TRUE(turnUntil([&] { return !state->discoverLoading(); }));
  EXPECT_FALSE(state->searchError());
}

TEST(Suggestions, AreTheMostFrequentSubjectsOfAllShelves) {
  const QString longest(23, u'x');
  const QString accents =
      (text("e") + QString(15, QChar(0x301))).repeated(23); // as long to a reader
  const MediaItems first =
      items("f", {QString(500, u' ') + text("Drama"), text("ab"), accents + QChar(0x301), accents,
                  longest + u'x', longest, text("noir")});
  const MediaItems second = items("p", {text(" drama "), text("Noir"), text("DRAMA"), text("abc")});
  EXPECT_EQ(frequentSubjects({&first, &second}, 10),
            (QStringList{text("drama"), text("noir"), accents, longest, text("abc")}));
  QStringList many(100, text("ab")); // too short to be one; what follows so many is left out
  many[0] = text("first");
  many[99] = text("last");
  const MediaItems one = items("o", many + QStringList{text("left out")});
  EXPECT_EQ(frequentSubjects({&one}, 10), (QStringList{text("first"), text("last")}));
  EXPECT_EQ(frequentSubjects({&one}, 1), QStringList{text("first")});
}

TEST(RecentlyViewed, AreTheLatestOfTheCatalog) {
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
