// What every service stands on: loop, threads, clock, network, preferences, stream server.
#pragma once
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "base/Random.h"
#include "engine/SessionRunner.h"
#include "net/HttpClient.h"
#include "net/HttpFileTransfers.h"
#include "storage/PreferenceStore.h"
#include "streaming/LocalStreamServer.h"

namespace vellum {

// Made once by main() on the main thread, before any service, and gone after the last of them.
// The order of the fields is the order of construction: at the end the server goes first, then the
// network, and the pool waits for whatever still runs on it.
struct Runtime {
  Runtime(); // with the user's preferences
  // With those of that file; with none, and nothing read or kept, if the path is empty.
  explicit Runtime(const QString& preferencesFile);

  SystemClock clock;
  SystemRandom random;
  MainLoop main;
  PreferenceStore preferences; // searches that end late on the pool still write to it
  IoPool pool;
  HttpClient http{main};
  HttpFileTransfers transfers;
  LocalStreamServer server{pool};

  // For sessions: `trackers` are those that every torrent gets besides its own.
  SessionEnvironment sessionEnvironment(const QStringList& trackers);
};

} // namespace vellum
