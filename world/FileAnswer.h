// A file over HTTP with single byte ranges (RFC 9110, section 14), resumable. Pure.
#pragma once
#include "world/Payload.h"
#include "world/RequestHead.h"
#include "world/ScriptedServer.h"

namespace vellum::world {

// The body is not copied: `file` outlives the server that sends it. `type` is a media type.
ScriptedServer::Answer fileAnswer(const RequestHead& request, const Payload& file,
                                  const QByteArray& type);

} // namespace vellum::world
