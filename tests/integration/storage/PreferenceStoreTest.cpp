#include "storage/PreferenceStore.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace vellum {
namespace {

QString key(const char* name) { return QLatin1String(name); }

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

struct PreferenceStoreTest : testing::Test {
  QTemporaryDir folder;
  const QString path = folder.path() + QStringLiteral("/new/preferences.json");
};

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
const QByteArray kBytes("\0\xff[1]\n", 6);

TEST_F(PreferenceStoreTest, AFullDiskLeavesTheFileAsItWas) {
  PreferenceStore store(path);
  store.set(key("kept"), true);
  const QByteArray before = contents(path);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{64, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  store.set(key("large"), QString(1000, u'x'));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(contents(path), before);
}

TEST_F(PreferenceStoreTest, AnotherProcessReadsWhatThisOneWroteTypeByType) {
  const pid_t child = ::fork();
  if (child == 0) {
    PreferenceStore store(path);
    store.set(key("yes"), true);
    store.set(key("one"), std::int64_t{1});
    store.set(key("largest"), kLargest);
    store.set(key("half"), 0.5);
    store.set(key("text"), QStringLiteral("true ü"));
    store.set(key("bytes"), kBytes);
    ::_exit(0);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);

  const PreferenceStore store(path);
  struct Case {
    const char* name;
    std::optional<bool> boolean;
    std::optional<std::int64_t> integer;
    std::optional<double> real;
    std::optional<QString> string;
    std::optional<QByteArray> data;
  };
  const double largest = static_cast<double>(kLargest);
  for (const auto& c :
       {Case{"yes", true, {}, {}, {}, {}}, Case{"one", {}, 1, 1.0, {}, {}},
        Case{"largest", {}, kLargest, largest, {}, {}}, Case{"half", {}, {}, 0.5, {}, {}},
        Case{"text", {}, {}, {}, QStringLiteral("true ü"), {}},
        Case{"bytes", {}, {}, {}, {}, kBytes}, Case{"missing", {}, {}, {}, {}, {}}}) {
    EXPECT_EQ(store.boolean(key(c.name)), c.boolean) << c.name;
    EXPECT_EQ(store.integer(key(c.name)), c.integer) << c.name;
    EXPECT_EQ(store.real(key(c.name)), c.real) << c.name;
    EXPECT_EQ(store.string(key(c.name)), c.string) << c.name;
    EXPECT_EQ(store.data(key(c.name)), c.data) << c.name;
  }
}

TEST_F(PreferenceStoreTest, ABrokenFileIsPutAsideBeforeItIsWrittenOver) {
  ASSERT_TRUE(QDir().mkpath(folder.path() + QStringLiteral("/new")));
  const QString aside = path + QStringLiteral(".broken");
  for (const QByteArray& broken : {QByteArray("{\"a\": 1"), QByteArray("[1]"), QByteArray(),
                                   QByteArray(1 << 20, '['), QByteArray("\xff\0", 2)}) {
    write(path, broken);
    PreferenceStore store(path);
    EXPECT_FALSE(store.integer(key("a")));
    EXPECT_EQ(contents(path), broken) << "reading changes nothing";
    store.set(key("a"), std::int64_t{2});
    store.set(key("b"), std::int64_t{3});
    EXPECT_EQ(contents(aside), broken);
    EXPECT_EQ(PreferenceStore(path).integer(key("a")), 2);
  }
  // What cannot be put aside is not written over either.
  ASSERT_TRUE(QFile::remove(aside) && QDir().mkpath(aside + QStringLiteral("/inside")));
  write(path, "precious");
  PreferenceStore(path).set(key("a"), std::int64_t{4});
  EXPECT_EQ(contents(path), "precious");
}

TEST_F(PreferenceStoreTest, OddValuesInTheFileAreMissingOrWhatTheySay) {
  ASSERT_TRUE(QDir().mkpath(folder.path() + QStringLiteral("/new")));
  write(path, R"({"big": 1e300, "half": 2.5, "two": 2.0, "null": null, "object": {"x": 1},
                  "bad": {"base64": "*"}, "none": {"base64": ""}, "kept": [1, {"deep": true}]})");
  PreferenceStore store(path);
  for (const char* name : {"big", "half", "null", "object"})
    EXPECT_FALSE(store.integer(key(name))) << name;
  EXPECT_EQ(store.integer(key("two")), 2);
  EXPECT_FALSE(store.data(key("bad")) || store.data(key("object")));
  EXPECT_EQ(store.data(key("none")), QByteArray());
  store.set(key("new"), true);
  EXPECT_TRUE(contents(path).contains("\"deep\": true")) << "what is not understood is kept";
  EXPECT_EQ(QFile(path).permissions() & (QFile::ReadOther | QFile::ReadGroup),
            QFile::Permissions());
}

TEST_F(PreferenceStoreTest, WritersAndReadersOfManyThreadsLoseNothing) {
  PreferenceStore store(path);
  constexpr int kWrites = 25;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back([&store, thread] {
      for (std::int64_t i = 1; i <= kWrites; ++i) {
        const QString own = QString::number(thread);
        store.set(own, i);
        EXPECT_EQ(store.integer(own), i);
      }
    });
  for (auto& thread : threads) thread.join();
  const PreferenceStore again(path);
  for (int thread = 0; thread < 4; ++thread)
    EXPECT_EQ(again.integer(QString::number(thread)), kWrites);
  EXPECT_EQ(QDir(folder.path() + QStringLiteral("/new")).entryList(QDir::Files).size(), 1)
      << "no temporary file stays";
}

} // namespace
} // namespace vellum
