// The connection under a peer, as the peer sees it.
#pragma once
#include "base/Bytes.h"

namespace vellum {

// On the session's strand. What is sent leaves in order, in as few system calls as possible.
class PeerLink {
public:
  virtual ~PeerLink() = default;
  virtual void send(ByteSpan bytes) = 0;
  // Bytes handed to send() that the operating system has not taken yet.
  virtual std::size_t unsent() const = 0;
  // Ends the connection; safe at any moment and more than once.
  virtual void close() = 0;
};

} // namespace vellum
