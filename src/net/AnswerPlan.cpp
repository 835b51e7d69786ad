#include "net/AnswerPlan.h"
#include "base/Text.h"
#include <QDateTime>
#include <QLocale>

namespace vellum {

namespace {

using Body = AnswerPlan::Body;

struct ContentRange {
  std::int64_t first;
  std::int64_t last;  // inclusive
  std::int64_t total; // 0 if the server does not know
};

std::optional<std::int64_t> number(const QByteArray& text) {
  const bool hasSign = text.startsWith('-') || text.startsWith('+');
  return hasSign ? std::nullopt : parseInt64(QString::fromLatin1(text.trimmed()));
}

std::optional<ContentRange> parseContentRange(const QByteArray& header) {
  const QByteArray unit = "bytes ";
  const auto dash = header.indexOf('-');
  const auto slash = header.indexOf('/');
  if (!header.toLower().startsWith(unit) || dash < 0 || slash < dash) return std::nullopt;
  const auto first = number(header.mid(unit.size(), dash - unit.size()));
  const auto last = number(header.mid(dash + 1, slash - dash - 1));
  const QByteArray behind = header.mid(slash + 1).trimmed();
  const auto total = behind == "*" ? std::optional<std::int64_t>(0) : number(behind);
  if (!first || !last || !total || *last < *first) return std::nullopt;
  if (behind != "*" && *total <= *last) return std::nullopt;
  return ContentRange{*first, *last, *total};
}

bool isPlain(const QByteArray& encoding) {
  return encoding.isEmpty() || encoding.compare("identity", Qt::CaseInsensitive) == 0;
}

// Nothing if this part does not go on where the file ends.
std::optional<AnswerPlan> planForPart(const AskedFrom& asked, const AnswerHead& head) {
  const auto range = parseContentRange(head.contentRange);
  if (!range || range->first != asked.offset) return std::nullopt;
  if (asked.total > 0 && range->total > 0 && asked.total != range->total) return std::nullopt;
  const std::int64_t known = range->total > 0 ? range->total : asked.total;
  return AnswerPlan{asked.offset > 0 ? Body::Append : Body::Replace,
                    known > 0 ? known : range->last + 1};
}

QDateTime httpDate(const QByteArray& text) {
  return QLocale::c().toDateTime(QString::fromLatin1(text.trimmed()),
                                 QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
}

} // namespace

AnswerPlan planFor(const AskedFrom& asked, const AnswerHead& head) {
  constexpr int kPartialContent = 206;
  constexpr int kRangeNotSatisfiable = 416;
  if (head.status == kRangeNotSatisfiable && asked.offset > 0) return {Body::AskAgain};
  if (head.status < 200 || head.status > 299) return {Body::BadStatus};
  if (!isPlain(head.contentEncoding)) return {Body::Unusable};
  if (head.status != kPartialContent) return {Body::Replace, head.contentLength.value_or(0)};
  if (const auto plan = planForPart(asked, head)) return *plan;
  return {asked.offset > 0 ? Body::AskAgain : Body::Unusable};
}

QByteArray resumeValidator(const QByteArray& etag, const QByteArray& lastModified,
                           const QByteArray& date) {
  const QByteArray tag = etag.trimmed();
  if (tag.size() >= 2 && tag.startsWith('"') && tag.endsWith('"')) return tag;
  const QDateTime changed = httpDate(lastModified);
  const QDateTime sent = httpDate(date);
  const bool isStrong = changed.isValid() && sent.isValid() && changed.secsTo(sent) >= 1;
  return isStrong ? lastModified.trimmed() : QByteArray();
}

} // namespace vellum
