// What becomes of the body of an answer, given what was asked for. Pure.
#pragma once
#include <QByteArray>
#include <cstdint>
#include <optional>

namespace vellum {

struct AnswerHead {
  int status = 0;
  QByteArray contentRange;    // as sent
  QByteArray contentEncoding; // as sent
  std::optional<std::int64_t> contentLength;
};

// What of the file is there already, and how long it was said to be (0: unknown). Both 0 for a
// request of the whole.
struct AskedFrom {
  std::int64_t offset = 0;
  std::int64_t total = 0;
};

struct AnswerPlan {
  enum class Body {
    Append,
    Replace,  // the whole file comes, from its beginning
    AskAgain, // what is there cannot be gone on from: drop it and ask for the whole
    BadStatus,
    Unusable // a part that nobody asked for, or compressed bytes
  };
  Body body = Body::Unusable;
  std::int64_t expected = 0; // bytes of the whole file; 0 if unknown
  bool operator==(const AnswerPlan&) const = default;
};

// RFC 9110, sections 14.4 and 15.3.7: a partial answer counts only if it begins where it was asked
// for and belongs to a file as long as before.
AnswerPlan planFor(const AskedFrom& asked, const AnswerHead& head);

// What a later request names as the state of the file that it wants more of: a strong entity tag,
// or a date of change that is at least a second older than the answer (RFC 9110, sections 8.8.2.2
// and 13.1.5). Empty if there is none.
QByteArray resumeValidator(const QByteArray& etag, const QByteArray& lastModified,
                           const QByteArray& date);

} // namespace vellum
