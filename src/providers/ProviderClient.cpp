#include "providers/ProviderClient.h"
#include "net/NetError.h"
#include "providers/ProviderError.h"
#include "providers/ResponseClassifier.h"
#include <QCoreApplication>

namespace vellum {

namespace {

using Failure = ProviderClient::Failure;

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ProviderClient)
};

QString memoryKey(const QUuid& id) {
  return QStringLiteral("lastWorking.") + id.toString(QUuid::WithoutBraces).toUpper();
}

QString hostOf(const QString& address) {
  const QString host = QUrl(address).host();
  return host.isEmpty() ? address : host;
}

// A body that is too large to read is none of the API's.
Flow<HttpResponse> ask(const Transport& transport, const QUrl& url) {
  try {
    co_return co_await transport(url);
  } catch (const NetError& error) {
    if (error.reason() == NetError::Reason::TooLarge) throw Failure(Failure::Case::NotJSON);
    throw;
  }
}

// Some systems refuse plain http: there the same address is asked over https, once.
Flow<HttpResponse> askSecurelyIfNeeded(const Transport& transport, const QUrl& url) {
  QUrl secure = url;
  try {
    co_return co_await ask(transport, url);
  } catch (const NetError& error) {
    if (error.reason() != NetError::Reason::PlainHttpBlocked || url.scheme() != u"http") throw;
    secure.setScheme(QStringLiteral("https"));
    if (!secure.isValid()) throw;
  }
  co_return co_await ask(transport, secure);
}

bool isExpected(ResponseKind kind, ExpectedFormat format) {
  return kind == (format == ExpectedFormat::Json ? ResponseKind::Json : ResponseKind::Xml);
}

// What a walk over the addresses has met so far.
struct Walk {
  bool sawWebPage = false;
  bool sawOtherData = false;
  QString lastDetail;

  void note(const QString& address, const std::exception& error) {
    if (const auto* failure = dynamic_cast<const Failure*>(&error)) {
      sawWebPage = sawWebPage || failure->kind() == Failure::Case::Html;
      sawOtherData = sawOtherData || failure->kind() == Failure::Case::NotJSON;
    }
    lastDetail = hostOf(address) + QStringLiteral(": ") + ProviderClient::humanize(error);
  }
  ProviderError error(const QString& name, const QString& host) const {
    if (sawWebPage) return ProviderError::webPage(name, host);
    if (sawOtherData) return ProviderError::notJSON(name, host);
    return ProviderError::unreachable(name, host, lastDetail);
  }
};

QString humanizeNetwork(const NetError& error) {
  switch (error.reason()) {
  case NetError::Reason::HostNotFound: return Texts::tr("DNS lookup failed");
  case NetError::Reason::CannotConnect: return Texts::tr("connection refused");
  case NetError::Reason::TimedOut: return Texts::tr("timed out");
  case NetError::Reason::PlainHttpBlocked:
    return Texts::tr("plain http is blocked by the system; use https");
  case NetError::Reason::Tls: return Texts::tr("TLS error");
  case NetError::Reason::NoConnection: return Texts::tr("no internet connection");
  default: return error.errorDescription();
  }
}

QString humanizeFailure(const Failure& failure) {
  switch (failure.kind()) {
  case Failure::Case::Network: return failure.text();
  case Failure::Case::Status: return Texts::tr("HTTP %1").arg(failure.status());
  case Failure::Case::Html: return Texts::tr("returned a web page");
  case Failure::Case::NotJSON: return Texts::tr("returned a non-API response");
  }
  return {};
}

} // namespace

QStringList ProviderClient::candidates(const ProviderConfig& config,
                                       const PreferenceStore& memory) {
  QStringList list = QStringList(config.baseURL) + config.mirrors;
  const auto remembered = lastWorking(memory, config.id);
  if (remembered && list.contains(*remembered)) list.prepend(*remembered);
  QStringList usable;
  for (const QString& entry : list) {
    const QString address = entry.trimmed();
    if (ProviderURL::validate(address) && !usable.contains(address)) usable.append(address);
  }
  return usable;
}

std::optional<QString> ProviderClient::lastWorking(const PreferenceStore& memory, const QUuid& id) {
  return memory.string(memoryKey(id));
}

void ProviderClient::setLastWorking(PreferenceStore& memory, const QUuid& id,
                                    const QString& address) {
  // Every write costs the disk a file.
  if (lastWorking(memory, id) != address) memory.set(memoryKey(id), address);
}

Flow<QByteArray> ProviderClient::attempt(QString base, ProviderRequest request,
                                         Transport transport) {
  const auto url = ProviderURL::build(base, request.path, request.items);
  if (!url) throw Failure(Failure::Case::Network, Texts::tr("invalid address"));
  const HttpResponse response = co_await askSecurelyIfNeeded(transport, *url);
  const ResponseKind kind = ResponseClassifier::classify(response.body, response.contentType);
  if (kind == ResponseKind::Html) throw Failure(Failure::Case::Html);
  if (response.status < 200 || response.status > 299)
    throw Failure(Failure::Case::Status, {}, response.status);
  if (!isExpected(kind, request.expect)) throw Failure(Failure::Case::NotJSON);
  co_return response.body;
}

Flow<ProviderClient::Answer> ProviderClient::fetch(ProviderConfig config, ProviderRequest request,
                                                   Transport transport, PreferenceStore& memory) {
  const QStringList addresses = candidates(config, memory);
  if (addresses.isEmpty()) throw ProviderError::notConfigured(config.name);
  Walk walk;
  for (const QString& address : addresses) {
    try {
      // Throws at once when the coroutine has been cancelled.
      QByteArray body = co_await attempt(address, request, transport);
      setLastWorking(memory, config.id, address);
      co_return Answer{std::move(body), address};
    } catch (const std::exception& error) {
      if (isCancellation(error)) throw;
      walk.note(address, error);
    }
  }
  throw walk.error(config.name, hostOf(addresses.first()));
}

QString ProviderClient::humanize(const std::exception& error) {
  if (const auto* failure = dynamic_cast<const Failure*>(&error)) return humanizeFailure(*failure);
  if (const auto* network = dynamic_cast<const NetError*>(&error)) return humanizeNetwork(*network);
  if (isCancellation(error)) return Texts::tr("cancelled");
  return QString::fromUtf8(error.what());
}

} // namespace vellum
