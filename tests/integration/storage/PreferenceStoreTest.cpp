#include "storage/PreferenceStore.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace vellum {
namespace {

QString text(const char* latin1) { return QLatin1String(latin1); }

struct PreferenceStoreTest : testing::Test {
  static QByteArray contents(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }
  void write(const QByteArray& bytes) const {
    QFile file(path);
    ASSERT_TRUE(QDir().mkpath(folder) && file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

  const QTemporaryDir home;
  const QString folder = home.filePath(text("new"));
  const QString path = folder + text("/preferences.json");
};

TEST_F(PreferenceStoreTest, AValueKeepsItsTypeAndWhatIsOddIsMissing) {
  write(R"({"big": 1e300, "odd": 2.5, "two": 2.0, "null": null, "object": {"x": 1},
            "bad": {"base64": "*"}, "none": {"base64": ""}, "kept": [1, {"deep": true}]})");
  {
    PreferenceStore writer(path);
    writer.set(text("yes"), true);
    writer.set(text("no"), false);
    writer.set(text("one"), std::int64_t{1});
    writer.set(text("largest"), std::numeric_limits<std::int64_t>::max());
    writer.set(text("half"), 0.5);
    writer.set(text("text"), QString::fromUtf8("true ü"));
    writer.set(text("bytes"), QByteArray("\0\xff[1]\n", 6));
  }
  const PreferenceStore store(path);
  // As which types a value may be read, and what it is then.
  const auto seen = [&store](const QString& key) {
    QStringList as;
    if (const auto value = store.boolean(key)) as << text(*value ? "true" : "false");
    if (const auto value = store.integer(key)) as << text("integer") << QString::number(*value);
    if (const auto value = store.real(key)) as << text("real") << QString::number(*value);
    if (const auto value = store.string(key)) as << text("string") << *value;
    if (const auto value = store.data(key)) as << text("bytes") << text(value->toHex());
    return as.join(u' ').toStdString();
  };
  using Case = std::pair<const char*, const char*>;
  for (const auto& [name, wanted] :
       {Case{"yes", "true"}, Case{"no", "false"}, Case{"one", "integer 1 real 1"},
        Case{"largest", "integer 9223372036854775807 real 9.22337e+18"}, Case{"half", "real 0.5"},
        Case{"text", "string true ü"}, Case{"bytes", "bytes 00ff5b315d0a"}, Case{"missing", ""},
        Case{"big", "real 1e+300"}, Case{"odd", "real 2.5"}, Case{"two", "integer 2 real 2"},
        Case{"null", ""}, Case{"object", ""}, Case{"bad", ""}, Case{"none", "bytes "}})
    EXPECT_EQ(seen(text(name)), wanted) << name;
  EXPECT_TRUE(contents(path).contains("\"deep\": true")) << "what is not understood is kept";
  EXPECT_EQ(QFile(path).permissions() & (QFile::ReadOther | QFile::ReadGroup),
            QFile::Permissions());
}

TEST_F(PreferenceStoreTest, ABrokenFileIsPutAsideBeforeItIsWrittenOver) {
  const QString aside = path + text(".broken");
  for (const QByteArray& broken : {QByteArray("{\"a\": 1"), QByteArray("[1]"), QByteArray()}) {
    write(broken);
    PreferenceStore store(path);
    EXPECT_FALSE(store.integer(text("a")));
    EXPECT_EQ(contents(path), broken) << "reading changes nothing";
    store.set(text("a"), std::int64_t{2});
    store.set(text("b"), std::int64_t{3});
    EXPECT_EQ(contents(aside), broken);
    EXPECT_EQ(PreferenceStore(path).integer(text("a")), 2);
  }
  // What cannot be copied is renamed.
  ASSERT_TRUE(QFile::remove(path) && QFile::remove(aside) && QDir().mkpath(path + text("/inside")));
  PreferenceStore(path).set(text("a"), std::int64_t{4});
  EXPECT_EQ(PreferenceStore(path).integer(text("a")), 4);
  EXPECT_TRUE(QDir(aside + text("/inside")).exists());
  // What cannot be put aside is not written over either.
  write("precious");
  PreferenceStore(path).set(text("a"), std::int64_t{5});
  EXPECT_EQ(contents(path), "precious");
}

TEST_F(PreferenceStoreTest, WritersAndReadersOfManyThreadsLoseNothing) {
  PreferenceStore store(path);
  constexpr std::int64_t writes = 10;
  const auto run = [&](int thread) {
    const QString own = QString::number(thread);
    for (std::int64_t i = 1; i <= writes; ++i) {
      store.set(own, i);
      EXPECT_EQ(store.integer(own), i);
    }
  };
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 3; ++thread) threads.emplace_back(run, thread);
  threads.clear();
  const PreferenceStore again(path);
  for (int thread = 0; thread < 3; ++thread)
    EXPECT_EQ(again.integer(QString::number(thread)), writes);
  EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 1) << "no temporary file stays";
}

} // namespace
} // namespace vellum
