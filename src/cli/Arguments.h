// The command line, read. Pure.
#pragma once
#include <QStringList>
#include <optional>

namespace vellum {

struct Arguments {
  enum class Mode { Window, SelfTest, Stream, Search, Help, Version, Wrong };
  Mode mode = Mode::Window;
  QString error;     // one sentence, when the mode is Wrong
  QString words;     // Search
  QStringList links; // Window: magnet links and .torrent files, as they were given
  // Stream:
  QString source;
  std::optional<int> file;
  QString directory; // empty: the cache
  bool keep = false;
};

// Without the program's own name. "--selftest" anywhere comes before everything else.
Arguments parseArguments(const QStringList& arguments);
QString helpText();

} // namespace vellum
