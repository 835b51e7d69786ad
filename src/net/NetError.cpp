#include "net/NetError.h"
#include <QCoreApplication>

namespace vellum {

namespace {
struct Texts {
  Q_DECLARE_TR_FUNCTIONS(NetError)
};
} // namespace

NetError NetError::http(int status) {
  return {Reason::Http, Texts::tr("HTTP %1").arg(status), status};
}
NetError NetError::badURL() { return {Reason::BadUrl, Texts::tr("Invalid URL")}; }
NetError NetError::empty() { return {Reason::Empty, Texts::tr("Empty response")}; }
NetError NetError::tooLarge() { return {Reason::TooLarge, Texts::tr("The answer is too large")}; }
NetError NetError::timedOut() { return {Reason::TimedOut, Texts::tr("The request timed out")}; }
NetError NetError::platform(Reason reason, QString text) { return {reason, std::move(text)}; }

} // namespace vellum
