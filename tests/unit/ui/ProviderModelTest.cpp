#include "support/ManualClock.h"
#include "support/ScriptedTransport.h"
#include "ui/manage/ProviderRowsModel.h"
#include "world/MainThread.h"
#include <QPointer>
#include <gtest/gtest.h>

namespace vellum::ui {

using namespace world;
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

struct ProviderModelTest : testing::Test, world::MainThread {
  static Flow<QByteArray> nothing(QUrl, std::chrono::milliseconds) { co_return QByteArray(); }

  ProviderConfig provider(const char* name, ProviderKind kind, const char* address) const {
    ProviderConfig config;
    config.name = text(name);
    config.kind = kind;
    config.baseURL = text(address);
    return config;
  }
  ProviderRowModel& row(int index) const { return *rows.at(index); }
  const ProviderConfig& stored(std::size_t index) const { return settings.providers().at(index); }
  QString names() const {
    QStringList list;
    for (int i = 0; i < rows.count(); ++i) list += row(i).name();
    return list.join(u' ');
  }
  QString states(int index) const {
    QStringList list;
    for (const QVariant& one : row(index).results())
      list += one.toMap().value(text("state")).toString();
    return list.join(u' ');
  }

  test::ManualClock clock;
  PreferenceStore memory;
  test::ScriptedTransport net;
  IoPool pool;
  SettingsStore settings{memory};
  ProviderRegistry registry{settings, memory, net.transport(), ArchiveOrgProvider(nothing)};
  ProviderConfig catalog = provider("C", ProviderKind::ArchiveOrg, "https://fixed");
  ProviderConfig indexer = provider("I", ProviderKind::Torznab, "https://i");
  ProviderConfig other = provider("O", ProviderKind::Yts, "");
  ProviderRowsModel rows{
      (settings.setProviders({catalog, indexer, other}),
       ProviderRowModel::Services{settings, registry, memory, net.transport(), clock, main, pool})};
};

TEST_F(ProviderModelTest, StoresWhatIsValidAndKeepsTheRestInTheEditor) {
  struct Case {
    const char* base;
    const char* mirrors;
    bool isValid, isPlain;
    const char* storedBase;
    QStringList storedMirrors;
    QStringList ignored;
  };
  const QString a = text("https://a"), b = text("http://b"), bad = text("not one");
  for (const Case& c : {
           Case{"", "", true, false, "", {}, {}}, // an address can be cleared
           Case{" \thttps://x/ \n", "", true, false, "https://x/", {}, {}},
           Case{"  http://x", "", true, true, "http://x", {}, {}},
           Case{"x", "https://a\nnot one\nhttp://b", false, false, "https://i", {}, {bad}},
           Case{"http://a b", "https://a", false, true, "https://i", {}, {}},
           Case{"   ", "https://a", false, false, "https://i", {}, {}},
           Case{"https://x",
                "https://a\nnot one\nhttp://b",
                true,
                false,
                "https://x",
                {a, b},
                {bad}},
           Case{"https://x",
                " https://a \r\n\r\n\t\rhttp://b\nftp://c\n",
                true,
                false,
                "https://x",
                {a, b},
                {text("ftp://c")}},
       }) {
    settings.update(indexer);
    row(1).edit();
    row(1).setBase(text(c.base));
    row(1).setMirrorsText(text(c.mirrors));
    EXPECT_EQ(row(1).isBaseValid(), c.isValid) << c.base;
    EXPECT_EQ(row(1).isBasePlain(), c.isPlain) << c.base;
    row(1).done();
    EXPECT_FALSE(row(1).isExpanded());
    EXPECT_EQ(stored(1).baseURL, text(c.storedBase));
    EXPECT_EQ(stored(1).mirrors, c.storedMirrors) << c.mirrors;
    EXPECT_EQ(row(1).invalidMirrors(), c.ignored) << c.mirrors;
    EXPECT_EQ(row(1).mirrorsText(), text(c.mirrors));
  }
  int writes = 0;
  QObject::connect(&settings, &SettingsStore::providersChanged, [&] { ++writes; });
  row(1).done();
  EXPECT_EQ(writes, 0); // nothing has changed
  EXPECT_EQ(row(2).subtitle(), label(ProviderKind::Yts) + text(" · no address set"));
}

TEST_F(ProviderModelTest, TestsWhatIsOnTheScreen) {
  net.hosts[text("good")] = test::reply("<rss><channel></channel></rss>");
  net.hosts[text("page")] = test::reply("<html>", 200, "text/html");
  row(1).setApiKey(text("key"));
  row(1).setBase(text("https://good"));
  row(1).setMirrorsText(text("https://page\nhttps://gone"));
  row(1).test();
  EXPECT_EQ(stored(1).baseURL, text("https://good"));
  EXPECT_EQ(stored(1).mirrors.size(), 2);
  EXPECT_TRUE(row(1).isTesting());
  EXPECT_EQ(states(1), QString());
  ASSERT_TRUE(turnUntil([&] { return !row(1).isTesting(); }));
  EXPECT_EQ(states(1), text("ok doubtful failed"));
  const auto detail = [&](int line) {
    return row(1).results()[line].toMap().value(text("detail")).toString();
  };
  EXPECT_EQ(detail(0), text("Reachable, API format OK · 0 ms"));
  EXPECT_FALSE(detail(2).contains(text(" ms"))) << detail(2).toStdString();
  ASSERT_EQ(net.asked.size(), 3);
  EXPECT_TRUE(net.asked[0].contains(text("apikey=key")));

  row(1).setBase(text("in valid")); // tested as it is stored
  row(1).test();
  ASSERT_TRUE(turnUntil([&] { return !row(1).isTesting(); }));
  EXPECT_EQ(states(1), text("ok doubtful failed"));
}

TEST_F(ProviderModelTest, LeavesAFixedProviderAlone) {
  row(0).edit();
  row(0).setBase(text("https://elsewhere"));
  row(0).done();
  row(0).remove();
  EXPECT_FALSE(row(0).isExpanded());
  EXPECT_EQ(stored(0), catalog);
  EXPECT_EQ(row(0).subtitle(), label(ProviderKind::ArchiveOrg));
  row(0).setEnabled(false);
  EXPECT_FALSE(stored(0).enabled);
}

TEST_F(ProviderModelTest, KeepsRowsThatStayAndSurvivesThoseThatGo) {
  const QPointer<ProviderRowModel> first = &row(1), second = &row(2);
  second->edit();
  second->setBase(text("half typ"));
  first->edit();
  first->test();
  first->remove();
  EXPECT_EQ(names(), text("C O"));
  ASSERT_NE(first, nullptr); // whoever pressed its button still looks at it
  first->done();
  first->setApiKey(text("late"));
  EXPECT_EQ(settings.providers().size(), 2U);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(first, nullptr);
  QCoreApplication::processEvents(); // the test's answer finds nobody

  auto twice = indexer;
  twice.name = text("T");
  settings.setProviders({other, indexer, twice, catalog}); // two with one id
  EXPECT_EQ(names(), text("O I T C"));
  EXPECT_EQ(&row(0), second);
  EXPECT_TRUE(second->isExpanded());
  EXPECT_EQ(second->base(), text("half typ"));
  row(1).remove();
  EXPECT_EQ(names(), text("O C"));
  rows.startOver();
  EXPECT_EQ(row(0).base(), QString());
  EXPECT_FALSE(row(0).isExpanded());
}

} // namespace
} // namespace vellum::ui
