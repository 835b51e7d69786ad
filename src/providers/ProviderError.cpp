#include "providers/ProviderError.h"
#include <QCoreApplication>

namespace vellum {

namespace {
struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ProviderError)
};
} // namespace

ProviderError ProviderError::notConfigured(const QString& name) {
  return {Case::NotConfigured,
          Texts::tr("%1 has no address yet. Set one in Settings → Providers").arg(name)};
}

ProviderError ProviderError::unreachable(const QString& name, const QString& host,
                                         const QString& detail) {
  return {
      Case::Unreachable,
      Texts::tr("%1 unreachable at %2. Check the address in Settings → Providers").arg(name, host),
      detail};
}

ProviderError ProviderError::webPage(const QString& name, const QString& host) {
  return {Case::WebPage,
          Texts::tr("Provider returned a web page instead of API data (%1 at %2). Try "
                    "another mirror in Settings → Providers")
              .arg(name, host)};
}

ProviderError ProviderError::notJSON(const QString& name, const QString& host) {
  return {Case::NotJSON,
          Texts::tr("%1 at %2 didn't return API data. Check the address in Settings → Providers")
              .arg(name, host)};
}

ProviderError ProviderError::unexpectedFormat(const QString& name) {
  return {Case::UnexpectedFormat,
          Texts::tr("%1 answered, but not in the expected API format. Check the "
                    "provider type and address in Settings → Providers")
              .arg(name)};
}

} // namespace vellum
