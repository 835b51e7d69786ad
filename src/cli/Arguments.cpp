#include "cli/Arguments.h"
#include "desktop/LaunchArguments.h"
#include <QCoreApplication>

namespace vellum {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("CommandLine", text); }

Arguments wrong(QString sentence) {
  Arguments out;
  out.mode = Arguments::Mode::Wrong;
  out.error = std::move(sentence);
  return out;
}

// Reads options one by one; the first thing that is wrong stands in `error`.
class Reader {
public:
  explicit Reader(QStringList arguments) : m_rest(std::move(arguments)) {}

  Arguments read() {
    while (!m_rest.isEmpty() && m_out.error.isEmpty()) option(m_rest.takeFirst());
    if (!m_out.error.isEmpty()) return wrong(m_out.error);
    if (m_out.mode != Arguments::Mode::Window && !m_out.links.isEmpty())
      return wrong(tr("Unknown argument: %1 (see vellum --help).").arg(m_out.links.first()));
    const bool streams = m_out.mode == Arguments::Mode::Stream;
    if (!streams && (m_out.file || m_out.keep || !m_out.directory.isEmpty()))
      return wrong(tr("--file, --dir and --keep belong to --stream."));
    return m_out;
  }

private:
  void option(const QString& name) {
    if (name == QLatin1String("--help")) {
      m_out.mode = Arguments::Mode::Help;
    } else if (name == QLatin1String("--version")) {
      m_out.mode = Arguments::Mode::Version;
    } else if (name == QLatin1String("--stream")) {
      m_out.mode = Arguments::Mode::Stream;
      m_out.source = value(name);
    } else if (name == QLatin1String("--search")) {
      m_out.mode = Arguments::Mode::Search;
      m_out.words = words(name);
    } else if (name == QLatin1String("--file")) {
      file(value(name));
    } else if (name == QLatin1String("--dir")) {
      m_out.directory = value(name);
    } else if (name == QLatin1String("--keep")) {
      m_out.keep = true;
    } else if (!openableLinks({name}, QString()).isEmpty()) {
      m_out.links += name;
    } else {
      m_out.error = tr("Unknown argument: %1 (see vellum --help).").arg(name);
    }
  }
  QString value(const QString& name) {
    if (m_rest.isEmpty() || m_rest.first().trimmed().isEmpty()) {
      m_out.error = tr("%1 needs a value (see vellum --help).").arg(name);
      return {};
    }
    return m_rest.takeFirst();
  }
  // All that follows, so that nobody has to quote what is looked for.
  QString words(const QString& option) {
    const QString all = m_rest.join(u' ').trimmed();
    m_rest.clear();
    if (all.isEmpty()) m_out.error = tr("%1 needs a value (see vellum --help).").arg(option);
    return all;
  }
  void file(const QString& text) {
    if (!m_out.error.isEmpty()) return;
    bool isNumber = false;
    const int index = text.toInt(&isNumber);
    if (isNumber && index >= 0)
      m_out.file = index;
    else
      m_out.error = tr("--file needs the number of a file, not \"%1\".").arg(text);
  }

  QStringList m_rest;
  Arguments m_out;
};

} // namespace

Arguments parseArguments(const QStringList& arguments) {
  if (arguments.contains(QLatin1String("--selftest"))) {
    Arguments out;
    out.mode = Arguments::Mode::SelfTest;
    return out;
  }
  return Reader(arguments).read();
}

QString helpText() {
  return tr(
      "Vellum plays films, also while they are still arriving.\n"
      "\n"
      "  vellum [LINK…]\n"
      "      Opens the window; a magnet link or a .torrent file shows in its inspector.\n"
      "  vellum --stream SOURCE [--file N] [--dir DIR] [--keep]\n"
      "      Streams a torrent to an address on this machine that any player can open.\n"
      "      SOURCE is a magnet link, the path or http(s) address of a .torrent file, or a\n"
      "      40-digit info hash. Prints FILE, URL, READY and DONE, one line each; Ctrl-C ends it.\n"
      "      --file N   play file number N of the torrent\n"
      "      --dir DIR  keep the arriving file below DIR instead of the cache\n"
      "      --keep     do not remove it at the end\n"
      "  vellum --search WORDS\n"
      "      Asks the providers that are switched on, and prints what each of them said and the\n"
      "      merged results. Ends with 0 if any provider answered.\n"
      "  vellum --selftest   run the program's own checks\n"
      "  vellum --version    print the version\n"
      "  vellum --help       print this text\n");
}

} // namespace vellum
