#include "base/ReplaceFile.h"
#include "storage/LibraryStore.h"
#include "storage/SettingsStore.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QVariant>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace vellum {
namespace {

using namespace Qt::StringLiterals;

QString text(const char* latin1) { return QLatin1String(latin1); }

HistoryEntry row(const char* key, double position = 0, double duration = 0) {
  return {text(key), {}, {}, {}, false, {}, position, duration, 0};
}

std::string keys(const HistoryEntries& rows) {
  QStringList list;
  for (const HistoryEntry& entry : rows) list << entry.key;
  return list.join(u' ').toStdString();
}

// What a store keeps in its file, of which a folder has to be made first.
struct StoresTest : testing::Test {
  QByteArray bytes(const char* suffix = "") const {
    QFile file(path + text(suffix));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
  }
  void write(const QByteArray& all) const {
    EXPECT_TRUE(replaceFile(path, all, Privacy::Everybody));
  }
  bool isPrivate() const {
    return !(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther));
  }

  const QTemporaryDir home;
  const QString path = home.filePath(u"made/kept.json"_s);
  PreferenceStore memory; // without a file
};

TEST_F(StoresTest, ABrokenHistoryIsEmptyAndLeftAloneUntilTheNextSave) {
  EXPECT_TRUE(LibraryStore(path).history().empty());
  EXPECT_FALSE(QFileInfo::exists(QFileInfo(path).path())) << "reading makes nothing";
  LibraryStore(path).record(row("a"));
  EXPECT_TRUE(isPrivate());
  const QByteArray good = bytes();
  const auto most = static_cast<qsizetype>(LibraryStore::kLargestFile);
  using Case = std::pair<QByteArray, int>;
  for (const auto& [file, rows] :
       {Case{good, 1}, Case{good.leftJustified(most), 1}, Case{good.leftJustified(most + 1), 0},
        Case{"", 0}, Case{"{}", 0}, Case{good.chopped(3), 0}, Case{"[{}]", 0}}) {
    write(file);
    LibraryStore store(path);
    EXPECT_EQ(store.history().size(), rows) << file.size() << file.left(300).toStdString();
    store.updateProgress(u"unknown"_s, 1, 1);
    EXPECT_TRUE(bytes() == file);
    store.record(row("b"));
    EXPECT_EQ(LibraryStore(path).history(), store.history());
  }
  QFile::remove(path);
  ASSERT_EQ(mkfifo(qPrintable(path), 0600), 0);
  EXPECT_TRUE(LibraryStore(path).history().empty()) << "nobody ever writes into this pipe";
}

TEST_F(StoresTest, HistoryKeepsTheNewestRowsInOrderAndEachChangeOverARestart) {
  LibraryStore store(path);
  int published = 0;
  QObject::connect(&store, &LibraryStore::historyChanged, [&] { ++published; });
  const auto front = [&] { return keys({store.history().begin(), store.history().begin() + 3}); };
  for (int i = 0; i <= 200; ++i) store.record(row(std::to_string(i).c_str(), i, 1000));
  EXPECT_FALSE(store.entry(u"0"_s));
  store.record(row("7", 1));
  EXPECT_EQ(store.history().size(), 200);
  EXPECT_EQ(store.history()[0], row("7", 1)) << "no field is carried over";
  for (const auto& [position, duration, known] :
       {std::tuple{-5.0, 0.0, 1000.0}, {50.0, 2000.0, 2000.0}, {0.5, 1.0, 1.0}}) {
    store.updateProgress(u"8"_s, position, duration);
    EXPECT_EQ(store.history()[193], row("8", position, known)) << "it stays where it is";
    EXPECT_EQ(LibraryStore(path).history(), store.history());
  }
  store.record(store.history()[193]);
  EXPECT_EQ(front(), "8 7 200");
  for (const char* key : {"7", "unknown"}) store.remove(text(key));
  EXPECT_EQ(front(), "8 200 199");
  EXPECT_EQ(LibraryStore(path).history(), store.history());
  store.clear();
  EXPECT_EQ(bytes().trimmed(), "[]");
  EXPECT_EQ(published, 201 + 1 + 3 + 1 + 2 + 1);
}

TEST_F(StoresTest, ContinuesWhatIsBegunAndNotNearlyFinished) {
  LibraryStore store(path);
  for (const HistoryEntry& one :
       {row("begun", 10.01, 100), row("not", 10, 100), row("unknown", 10.5, 0),
        row("under", 94.99, 100), row("at", 95, 100), row("negative", 1e6, -1)})
    store.record(one);
  EXPECT_EQ(keys(store.continueWatching()), "negative under unknown begun");
}

TEST_F(StoresTest, EachSettingHasADefaultATypeAndASignalAndIsKept) {
  const QString own = qEnvironmentVariable("VELLUM_HOME"); // of this program's own
  const QString support = own + u"/ApplicationSupport/VellumApp"_s;
  const QString movies = own + u"/Movies/VellumApp"_s;
  using Settings = SettingsStore;
  const std::tuple<const char*, QVariant, QVariant, void (Settings::*)()> rows[] = {
      {"cachePath", support + u"/Cache"_s, u"/c"_s, &Settings::cachePathChanged},
      {"downloadsPath", movies, u"/d"_s, &Settings::downloadsPathChanged},
      {"cacheLimitMB", 1024LL, -1LL, &Settings::cacheLimitMBChanged},
      {"autoCleanDays", 14LL, 0LL, &Settings::autoCleanDaysChanged},
      {"gridView", true, false, &Settings::gridViewChanged},
      {"preferredQuality", u"1080p"_s, u"720p"_s, &Settings::preferredQualityChanged},
      {"uploadLimitKBps", 0LL, 7LL, &Settings::uploadLimitKBpsChanged},
      {"stopSeedingOnClose", true, false, &Settings::stopSeedingOnCloseChanged},
      {"keepAfterPlayback", false, true, &Settings::keepAfterPlaybackChanged},
  };
  for (const auto& [name, byDefault, other, changed] : rows) {
    EXPECT_EQ(Settings(memory).property(name), byDefault) << name;
    memory.set(text(name), QByteArray("another type"));
    Settings settings(memory);
    EXPECT_EQ(settings.property(name), byDefault) << name;
    int published = 0;
    QObject::connect(&settings, changed, [&published = published] { ++published; });
    EXPECT_TRUE(settings.setProperty(name, other));
    EXPECT_EQ(published, 1) << name;
    EXPECT_EQ(settings.property(name), other) << name;
    EXPECT_EQ(Settings(memory).property(name), other) << name;
  }
  EXPECT_TRUE(QFileInfo(support).isDir());
  EXPECT_FALSE(QFileInfo::exists(movies));
  for (const auto& [kilobytes, bytes] : {std::pair{5LL, 5'120LL}, {1LL << 62, 0}}) {
    Settings(memory).setUploadLimitKBps(kilobytes);
    EXPECT_EQ(Settings::uploadLimit(memory), bytes);
  }
}

TEST_F(StoresTest, AStoredListOfProvidersIsTakenAsAWholeOrNotAtAll) {
  SettingsStore settings(memory);
  QStringList defaults;
  for (const ProviderConfig& one : settings.providers())
    defaults << one.name << rawValue(one.kind) << text(one.enabled ? "on" : "off")
             << text(one.baseURL.isEmpty() ? "nowhere" : "somewhere");
  EXPECT_EQ(defaults.join(u' ').toStdString(), "Vidarium archiveOrg on somewhere "
                                               "YTS yts off nowhere ApiBay apibay on somewhere");
  int published = 0;
  QObject::connect(&settings, &SettingsStore::providersChanged, [&] { ++published; });
  settings.update(ProviderConfig()); // of an id that is not there
  ProviderConfig changed = settings.providers()[1];
  changed.baseURL = u"https://yts.example"_s;
  settings.update(changed);
  EXPECT_EQ(published, 1);
  EXPECT_EQ(SettingsStore(memory).providers(), settings.providers());
  EXPECT_EQ(settings.providers().at(1), changed);
  settings.setProviders({});
  EXPECT_TRUE(SettingsStore(memory).providers().empty()) << "never merged with the defaults";
  memory.set(u"providers"_s, QByteArray("[{\"name\":\"no kind\"}]"));
  EXPECT_EQ(SettingsStore(memory).providers().size(), 3);
}

TEST_F(StoresTest, APreferenceKeepsItsTypeAndWhatIsOddIsMissing) {
  write(R"({"big": 1e300, "odd": 2.5, "two": 2.0, "null": null, "object": {"x": 1},
            "bad": {"base64": "*"}, "none": {"base64": ""}, "kept": [1, {"deep": true}]})");
  PreferenceStore writer(path);
  writer.set(u"yes"_s, true);
  writer.set(u"one"_s, std::int64_t{1});
  writer.set(u"largest"_s, std::int64_t{INT64_MAX});
  writer.set(u"half"_s, 0.5);
  writer.set(u"text"_s, u"true ü"_s);
  writer.set(u"bytes"_s, QByteArray("\0\xff[1]\n", 6));
  const PreferenceStore store(path);
  // As which types a value may be read, and what it is then.
  const auto seen = [&store](const QString& key) {
    QStringList as;
    if (const auto value = store.boolean(key)) as << text(*value ? "true" : "false");
    if (const auto value = store.integer(key)) as << u"integer"_s << QString::number(*value);
    if (const auto value = store.real(key)) as << u"real"_s << QString::number(*value);
    if (const auto value = store.string(key)) as << u"string"_s << *value;
    if (const auto value = store.data(key)) as << u"bytes"_s << text(value->toHex());
    return as.join(u' ').toStdString();
  };
  using Case = std::pair<const char*, const char*>;
  for (const auto& [name, wanted] :
       {Case{"yes", "true"}, Case{"one", "integer 1 real 1"},
        Case{"largest", "integer 9223372036854775807 real 9.22337e+18"}, Case{"half", "real 0.5"},
        Case{"text", "string true ü"}, Case{"bytes", "bytes 00ff5b315d0a"}, Case{"missing", ""},
        Case{"big", "real 1e+300"}, Case{"odd", "real 2.5"}, Case{"two", "integer 2 real 2"},
        Case{"null", ""}, Case{"object", ""}, Case{"bad", ""}, Case{"none", "bytes "}})
    EXPECT_EQ(seen(text(name)), wanted) << name;
  EXPECT_TRUE(bytes().contains("\"deep\": true")) << "what is not understood is kept";
  EXPECT_TRUE(isPrivate());
}

TEST_F(StoresTest, BrokenPreferencesArePutAsideBeforeTheyAreWrittenOver) {
  const auto a = [this] { return PreferenceStore(path).integer(u"a"_s); };
  for (const QByteArray& broken : {QByteArray("{\"a\": 1"), QByteArray("[1]"), QByteArray()}) {
    write(broken);
    EXPECT_FALSE(a());
    EXPECT_EQ(bytes(), broken) << "reading changes nothing";
    PreferenceStore store(path);
    for (const char* key : {"a", "b"}) store.set(text(key), std::int64_t{2});
    EXPECT_EQ(bytes(".broken"), broken);
    EXPECT_EQ(a(), 2);
  }
  ASSERT_TRUE(QFile::remove(path + u".broken"_s) && QDir().mkpath(path + u".broken"_s));
  write("precious");
  PreferenceStore(path).set(u"a"_s, std::int64_t{3});
  EXPECT_EQ(bytes(), "precious") << "it cannot be put aside";
}

TEST_F(StoresTest, PreferencesOfManyThreadsAreAllKept) {
  PreferenceStore store(path);
  const auto write = [&](const QString& key) {
    for (std::int64_t i = 1; i <= 10; ++i) store.set(key, i);
    EXPECT_EQ(store.integer(key), 10);
  };
  const QStringList own{u"a"_s, u"b"_s, u"c"_s};
  std::vector<std::jthread> threads;
  for (const QString& key : own) threads.emplace_back(write, key);
  threads.clear();
  for (const QString& key : own) EXPECT_EQ(PreferenceStore(path).integer(key), 10);
}

} // namespace
} // namespace vellum
