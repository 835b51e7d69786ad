#include "base/Bytes.h"
#include "base/Random.h"
#include "base/ReplaceFile.h"
#include "base/Sha1.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace vellum {
namespace {

TEST(Bytes, AnInfoHashIsExactlyFortyHexadecimalDigits) {
  const QString digits = QStringLiteral("09afAF7e").repeated(5);
  EXPECT_EQ(toHex(hash20FromHex(digits).value()), digits.toLower());
  for (const char c : {'/', ':', '@', 'G', '`', 'g', '+'})
    EXPECT_FALSE(hash20FromHex(digits.chopped(1) + QLatin1Char(c))) << c;
  for (const QString& bad : {digits.chopped(1), digits + u'0', QString()})
    EXPECT_FALSE(hash20FromHex(bad)) << bad.toStdString();
}

TEST(Bytes, BigEndianBothWaysAndNotAByteMore) {
  std::array<std::byte, 9> out{};
  putBe64(out, 0x0102030405060708);
  EXPECT_EQ(toHex(out), QStringLiteral("010203040506070800"));
  EXPECT_EQ(rd64(out, 1), 0x0203040506070800U);
  EXPECT_EQ(rd32(out, 2), 0x03040506U);
  EXPECT_EQ(toHex(be32(0xfeff0102)), QStringLiteral("feff0102"));
}

TEST(Sha1, GoesInStepsAndStartsAnew) {
  const QString abc = QStringLiteral("a9993e364706816aba3e25717850c26c9cd0d89d"); // FIPS 180
  EXPECT_EQ(toHex(Sha1::of(asBytes(std::string_view("abc")))), abc);
  Sha1 sha;
  for (const bool isAbandoned : {false, true, false}) {
    for (const std::string_view part : {"a", "bc"}) sha.update(asBytes(part));
    if (isAbandoned)
      sha.reset();
    else
      EXPECT_EQ(toHex(sha.finish()), abc);
  }
}

TEST(Random, FavoursNoNumberOfItsRange) {
  struct Scripted final : Random {
    std::uint64_t next64() override { return values.at(next++); }
    std::vector<std::uint64_t> values{~0ULL, ~0ULL - 3, 5, 6, ~0ULL >> 32};
    std::size_t next = 0;
  } scripted;
  EXPECT_EQ(scripted.uniform(10, 13), 11U); // the first two are of an incomplete round
  EXPECT_EQ(scripted.uniform(10, 13), 12U);
  EXPECT_EQ(scripted.uniform(0, 0xffffffff), 0xffffffffU);
}

TEST(ReplaceFile, WritesAllOrNothingAndHidesWhatIsPrivate) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("made/file"));
  const auto others = QFile::ReadGroup | QFile::ReadOther;
  for (const auto& [bytes, privacy] :
       {std::pair("old", Privacy::Everybody), std::pair("new", Privacy::OwnerOnly)}) {
    EXPECT_TRUE(replaceFile(path, bytes, privacy));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), bytes);
    EXPECT_EQ((file.permissions() & others) == 0, privacy == Privacy::OwnerOnly) << bytes;
  }
  EXPECT_FALSE(replaceFile(path + QStringLiteral("/below"), "x", Privacy::Everybody));

  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{64, limit.rlim_max}; // as a disk that takes so many bytes more
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  for (const int bytes : {65, 100'000}) // more than any buffer holds
    EXPECT_FALSE(replaceFile(path, QByteArray(bytes, 'x'), Privacy::Everybody));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(QFileInfo(path).size(), 3) << "the old file";
  EXPECT_EQ(QFileInfo(path).dir().count(), 3U) << "and, with . and .., nothing left behind";
}

} // namespace
} // namespace vellum
