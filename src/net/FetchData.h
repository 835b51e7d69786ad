// The one plain download of an address into memory, as everybody else is handed it.
#pragma once
#include "base/Flow.h"
#include <QByteArray>
#include <QUrl>
#include <chrono>
#include <functional>

namespace vellum {

// Awaitable on any executor; the body at a status of 200 to 299. Throws NetError, and
// asio::system_error when the awaiting coroutine is cancelled.
using FetchData = std::function<Flow<QByteArray>(QUrl, std::chrono::milliseconds)>;

} // namespace vellum
