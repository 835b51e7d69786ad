// One request to a provider, as whoever sends one is handed it.
#pragma once
#include "base/Flow.h"
#include <QByteArray>
#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

namespace vellum {

struct HttpResponse {
  QByteArray body;
  std::optional<QString> contentType; // nothing if the answer names none
  int status = 200;
};

// A GET, awaitable on any executor; the answer whatever its status. Throws NetError when there is
// none, and asio::system_error when the awaiting coroutine is cancelled.
using Transport = std::function<Flow<HttpResponse>(QUrl)>;

} // namespace vellum
