#include "net/NetError.h"
#include <QCoreApplication>

namespace vellum {

namespace {
QString tr(const char* text) { return QCoreApplication::translate("NetError", text); }
} // namespace

NetError NetError::http(int status) { return NetError(tr("HTTP %1").arg(status), status); }
NetError NetError::badURL() { return NetError(tr("Invalid URL")); }
NetError NetError::empty() { return NetError(tr("Empty response")); }
NetError NetError::tooLarge() { return NetError(tr("The answer is too large")); }
NetError NetError::timedOut() { return NetError(tr("The request timed out")); }
NetError NetError::platform(QString text) { return NetError(std::move(text)); }

} // namespace vellum
