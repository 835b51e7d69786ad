#include "storage/CachePolicy.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

const QDateTime kNow = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000, Qt::UTC);
constexpr qint64 kDay = 86'400'000; // milliseconds

using Case = std::pair<std::int64_t, const char*>; // a limit, and the names of what goes

CachedFile file(const char* name, qint64 age, std::int64_t bytes = 0) {
  return {QLatin1String(name), kNow.addMSecs(-age), bytes};
}

std::string names(const std::vector<CachedFile>& files) {
  QString all;
  for (const CachedFile& one : files) all += one.path;
  return all.toStdString();
}

TEST(CachePolicy, AFileIsTooOldOnlyBeyondTheLastMillisecond) {
  const std::vector files{file("a", 14 * kDay), file("b", 14 * kDay + 1), file("c", 14 * kDay - 1),
                          file("d", -kDay), CachedFile{QStringLiteral("e"), {}}};
  for (const auto& [days, old] :
       {Case{14, "be"}, Case{1, "abce"}, Case{15, "e"}, Case{0, ""}, Case{-1, ""},
        Case{106'751'991, "e"}, Case{INT64_MAX, ""}, Case{INT64_MIN, ""}})
    EXPECT_EQ(names(tooOld(files, days, kNow)), old) << days;
}

TEST(CachePolicy, TheOldestGoUntilTheRestFits) {
  const std::vector files{file("a", 3 * kDay, 100),
                          file("b", 5 * kDay, 200),
                          file("c", 5 * kDay, 300),
                          file("d", kDay, 400),
                          {QStringLiteral("e"), {}, 0}};
  for (const auto& [limit, going] :
       {Case{1000, ""}, Case{999, "eb"}, Case{800, "eb"}, Case{799, "ebc"}, Case{500, "ebc"},
        Case{499, "ebca"}, Case{400, "ebca"}, Case{0, "ebcad"}, Case{-1, "ebcad"}})
    EXPECT_EQ(names(overLimit(files, limit)), going) << limit;
}

} // namespace
} // namespace vellum
