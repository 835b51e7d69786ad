#include "net/AnswerPlan.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using Body = AnswerPlan::Body;

TEST(AnswerPlanTest, APartCountsOnlyWhereTheFileEndsAndOfAFileAsLongAsBefore) {
  using Case = std::tuple<AskedFrom, const char*, AnswerPlan>;
  const AnswerPlan again{Body::AskAgain};
  const AnswerPlan unusable{Body::Unusable};
  for (const auto& [asked, range, plan] : {
           Case{{50, 100}, "bytes 50-99/100", {Body::Append, 100}},
           Case{{50, 100}, "Bytes 50-79/*", {Body::Append, 100}},
           Case{{50, 0}, "bytes 50-99/*", {Body::Append, 100}},
           Case{{50, 0}, "bytes 50-79/100", {Body::Append, 100}},
           Case{{1, 0}, "bytes 1-1/2", {Body::Append, 2}},
           Case{{1, 0}, "bytes 2-2/3", again},
           Case{{50, 100}, "bytes 0-99/100", again},
           Case{{50, 100}, "bytes 50-100/101", again},
           Case{{50, 100}, "bytes 50-49/100", again},
           Case{{50, 100}, "bytes 50-100/100", again},
           Case{{50, 100}, "", again},
           Case{{50, 100}, "lines 50-99/100", again},
           Case{{}, "bytes 0-99/100", {Body::Replace, 100}},
           Case{{}, "bytes 1-99/100", unusable},
           Case{{}, "bytes +0-99/100", unusable},
           Case{{}, "bytes 0-99999999999999999999/*", unusable},
           Case{{0, 1}, "bytes 0-1/2", unusable},
       })
    EXPECT_EQ(planFor(asked, {206, range, {}, 50}), plan) << asked.offset << ' ' << range;
}

TEST(AnswerPlanTest, TheStatusDecidesFirstThenTheEncoding) {
  using Case = std::tuple<std::int64_t, AnswerHead, AnswerPlan>;
  for (const auto& [offset, head, plan] : {
           Case{0, {200, {}, {}, 7}, {Body::Replace, 7}},
           Case{0, {299, {}, "Identity", {}}, {Body::Replace, 0}},
           Case{50, {200, "bytes 50-99/100", {}, 100}, {Body::Replace, 100}},
           Case{0, {199, {}, {}, 7}, {Body::BadStatus}},
           Case{50, {300, {}, {}, 7}, {Body::BadStatus}},
           Case{1, {416, "bytes */50", {}, 0}, {Body::AskAgain}},
           Case{0, {416, {}, {}, 0}, {Body::BadStatus}},
           Case{0, {200, {}, "gzip", 7}, {Body::Unusable}},
           Case{0, {404, {}, "gzip", 7}, {Body::BadStatus}},
       })
    EXPECT_EQ(planFor({offset, 0}, head), plan) << head.status << ' ' << offset;
}

TEST(AnswerPlanTest, OnlyAStrongValidatorHoldsAFileTogether) {
  const QByteArray changed = "Sun, 13 Sep 2020 12:26:40 GMT";
  const QByteArray secondLater = "Sun, 13 Sep 2020 12:26:41 GMT";
  using Case = std::tuple<QByteArray, QByteArray, QByteArray, QByteArray>;
  for (const auto& [etag, lastModified, date, validator] : {
           Case{"\"a\"", changed, secondLater, "\"a\""},
           Case{"\"\"", {}, {}, "\"\""},
           Case{"W/\"a\"", {}, {}, {}},
           Case{"W/\"a\"", changed, secondLater, changed},
           Case{"a", {}, {}, {}},
           Case{"\"", {}, {}, {}},
           Case{{}, changed, changed, {}},
           Case{{}, secondLater, changed, {}},
           Case{{}, changed, {}, {}},
           Case{{}, "yesterday", secondLater, {}},
       })
    EXPECT_EQ(resumeValidator(etag, lastModified, date), validator)
        << (etag + ' ' + lastModified).toStdString();
}

} // namespace
} // namespace vellum
