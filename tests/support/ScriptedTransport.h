// A network in which every host answers as a test says.
#pragma once
#include "net/NetError.h"
#include "net/Transport.h"
#include <map>
#include <mutex>
#include <variant>

namespace vellum::test {

using Scripted = std::variant<HttpResponse, NetError>;

inline Scripted reply(const QByteArray& body, int status = 200, const char* type = nullptr) {
  HttpResponse response{body, {}, status};
  if (type != nullptr) response.contentType = QLatin1String(type);
  return response;
}
inline Scripted failure(NetError::Reason reason) {
  return NetError::platform(reason, QStringLiteral("in other words"));
}

// Hosts that nobody scripted cannot be found. It outlives its transports; searches ask it from any
// thread, the test fills `hosts` before and reads `asked` after.
struct ScriptedTransport {
  Transport transport() {
    return [this](QUrl url) { return answer(*this, std::move(url)); };
  }
  static Flow<HttpResponse> answer(ScriptedTransport& self, QUrl url) {
    {
      const std::lock_guard lock(self.mutex);
      self.asked.append(url.toString(QUrl::FullyEncoded));
    }
    const auto found = self.hosts.find(url.scheme() + QStringLiteral("://") + url.host());
    const auto known = found != self.hosts.end() ? found : self.hosts.find(url.host());
    if (known == self.hosts.end())
      throw NetError::platform(NetError::Reason::HostNotFound, QStringLiteral("not found"));
    if (const auto* error = std::get_if<NetError>(&known->second)) throw NetError(*error);
    co_return std::get<HttpResponse>(known->second);
  }

  std::map<QString, Scripted> hosts; // by host, or by scheme and host
  QStringList asked;

private:
  std::mutex mutex;
};

} // namespace vellum::test
