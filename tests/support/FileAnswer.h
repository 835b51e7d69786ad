// A file over HTTP with single byte ranges (RFC 9110, section 14), resumable. Pure.
#pragma once
#include "support/Payload.h"
#include "support/RequestHead.h"
#include "support/ScriptedServer.h"

namespace vellum::test {

// The body is not copied: `file` outlives the server that sends it. `type` is a media type.
ScriptedServer::Answer fileAnswer(const RequestHead& request, const Payload& file,
                                  const QByteArray& type);

} // namespace vellum::test
