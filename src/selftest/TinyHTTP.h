// A server that gives the same JSON document to whoever asks for anything.
#pragma once
#include "selftest/LoopbackListener.h"
#include <QByteArray>

namespace vellum::selftest {

// Main thread.
class TinyHTTP {
public:
  TinyHTTP(IoPool& pool, const QByteArray& body);
  // The port; nothing if there is none to be had.
  std::optional<std::uint16_t> start() { return m_listener.start(); }

private:
  static Flow<> answer(asio::ip::tcp::socket socket, QByteArray bytes);

  LoopbackListener m_listener;
};

} // namespace vellum::selftest
