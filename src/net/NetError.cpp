#include "net/NetError.h"
#include <QCoreApplication>

namespace vellum {

namespace {
QString tr(const char* text) { return QCoreApplication::translate("NetError", text); }
} // namespace

NetError NetError::http(int status) { return {Reason::Http, tr("HTTP %1").arg(status), status}; }
NetError NetError::badURL() { return {Reason::BadUrl, tr("Invalid URL")}; }
NetError NetError::empty() { return {Reason::Empty, tr("Empty response")}; }
NetError NetError::tooLarge() { return {Reason::TooLarge, tr("The answer is too large")}; }
NetError NetError::timedOut() { return {Reason::TimedOut, tr("The request timed out")}; }
NetError NetError::platform(Reason reason, QString text) { return {reason, std::move(text)}; }

} // namespace vellum
