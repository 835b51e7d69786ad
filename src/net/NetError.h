// Why a request over HTTP failed, with the sentence that the user reads.
#pragma once
#include "base/DescribedError.h"

namespace vellum {

// A value; any thread. The first three are ours, the others tell what the network did.
class NetError final : public DescribedError {
public:
  enum class Reason {
    Http,
    BadUrl,
    Empty, // also: not of the shape that was expected
    TooLarge,
    HostNotFound,
    CannotConnect,
    TimedOut,
    Tls,
    PlainHttpBlocked, // by a policy of the system; only some systems have one
    NoConnection,
    Other
  };

  static NetError http(int status);                      // "HTTP 500"
  static NetError badURL();                              // "Invalid URL"
  static NetError empty();                               // "Empty response"
  static NetError tooLarge();                            // a body that nobody should have to hold
  static NetError timedOut();                            // no whole answer within the time given
  static NetError platform(Reason reason, QString text); // in the platform's own wording

  Reason reason() const { return m_reason; }
  // The status of an answer outside 200 to 299, else 0.
  int status() const { return m_status; }

private:
  NetError(Reason reason, QString text, int status = 0)
      : DescribedError(std::move(text)), m_reason(reason), m_status(status) {}

  Reason m_reason;
  int m_status;
};

} // namespace vellum
