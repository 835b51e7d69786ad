#include "cli/StreamCommand.h"
#include "base/Text.h"
#include "playback/StreamRules.h"
#include "streaming/VideoFileSelector.h"
#include <QCoreApplication>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/read_until.hpp>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace vellum {

namespace {

constexpr std::chrono::milliseconds kPoll{400};

QString tr(const char* text) { return QCoreApplication::translate("CommandLine", text); }

QString fileLine(const std::vector<TorrentFileEntry>& files, int index) {
  const TorrentFileEntry& file = files[static_cast<std::size_t>(index)];
  return QStringLiteral("%1  %2  %3")
      .arg(index, 4)
      .arg(formatByteCount(file.size), 9)
      .arg(printable(file.path));
}

// A line from the terminal; nothing at its end. The terminal is opened anew: reading turns its
// description non-blocking, and standard input shares that with the output and with the shell.
Flow<std::optional<QString>> readLine(asio::io_context& io) {
  const char* const terminal = ::ttyname(STDIN_FILENO);
  const int file = terminal != nullptr ? ::open(terminal, O_RDONLY | O_CLOEXEC | O_NOCTTY) : -1;
  if (file < 0) co_return std::nullopt;
  asio::posix::stream_descriptor input(io, file);
  std::string text;
  const auto [error, size] =
      co_await asio::async_read_until(input, asio::dynamic_buffer(text, 4096), '\n',
                                      asio::experimental::as_tuple(asio::use_awaitable));
  if (error == asio::error::operation_aborted) throw asio::system_error(error);
  if (error) co_return std::nullopt;
  co_return QString::fromUtf8(text.data(), static_cast<qsizetype>(size)).trimmed();
}

} // namespace

StreamCommand::StreamCommand(const Services& services, Arguments arguments)
    : m_services(services), m_arguments(std::move(arguments)),
      m_status(::isatty(STDERR_FILENO) == 1, services.clock), m_changed(services.pool.io()) {}

StreamCommand::~StreamCommand() {
  if (!m_session) return;
  m_session->setOnProgress({});
  m_session->setOnMetadata({});
}

Flow<int> StreamCommand::run() {
  int exitCode = 0;
  try {
    co_await stream();
  } catch (const Ended& end) {
    m_status.clear();
    if (!end.sentence.isEmpty()) std::fprintf(stderr, "%s\n", qUtf8Printable(end.sentence));
    exitCode = end.exitCode;
  } catch (const std::exception& error) {
    m_status.clear();
    const auto* system = dynamic_cast<const asio::system_error*>(&error);
    // Cancelled: the user's way to end it.
    if (system == nullptr || system->code() != asio::error::operation_aborted) {
      std::fprintf(stderr, "%s\n", error.what());
      exitCode = 1;
    }
  }
  if (m_session) m_services.engine.stop(m_session->key());
  co_return exitCode;
}

Flow<> StreamCommand::stream() {
  const TorrentSource source = co_await openSource();
  if (const auto failure = checkFreeAtStart(m_services.freeSpace(m_services.folder)))
    fail(*failure);
  startSession(source);
  co_await waitForMetadata();
  const int file = co_await chooseFile();
  select(file);
  co_await publish(file);
  co_await follow();
}

void StreamCommand::fail(const StreamFailure& failure) { throw Ended{1, failure.text()}; }

double StreamCommand::sinceStart() const {
  return secondsBetween(m_services.processStart, m_services.clock.now());
}

Flow<TorrentSource> StreamCommand::openSource() {
  auto opened = co_await openTorrentSource(m_arguments.source, m_services.fetch);
  if (const auto* failure = std::get_if<StreamFailure>(&opened)) fail(*failure);
  co_return std::get<TorrentSource>(std::move(opened));
}

void StreamCommand::startSession(const TorrentSource& source) {
  m_session = m_services.engine.acquire(source.hash, source.trackers, source.title, source.meta);
  m_session->setOnProgress([this](const SessionSnapshot& snapshot) {
    m_sawReady = m_sawReady || snapshot.streamReady;
    m_changed.ring();
  });
  // Comes on a worker thread, possibly after this object.
  m_session->setOnMetadata([this, &main = m_services.main, weak = std::weak_ptr(m_alive)] {
    main.post([this, weak] {
      if (!weak.expired()) m_changed.ring();
    });
  });
  m_session->addPeers(source.peers);
}

Flow<> StreamCommand::waitForMetadata() {
  const TimePoint start = m_services.clock.now();
  for (;;) {
    const SessionSnapshot snapshot = m_session->snapshot();
    if (snapshot.hasMetadata()) co_return;
    showStatus(snapshot);
    if (secondsBetween(start, m_services.clock.now()) > kMetadataLimit)
      fail({StreamFailure::Kind::NoMetadata, {}});
    co_await m_changed.wait(kPoll);
  }
}

Flow<int> StreamCommand::chooseFile() {
  const auto files = m_session->files();
  if (m_arguments.file) {
    if (static_cast<std::size_t>(*m_arguments.file) >= files.size())
      throw Ended{2, tr("There is no file %1 in this torrent; it has %2.")
                         .arg(*m_arguments.file)
                         .arg(files.size())};
    co_return *m_arguments.file;
  }
  const auto outcome = VideoFileSelector::select(files);
  using Kind = VideoFileSelector::Outcome::Kind;
  if (outcome.kind == Kind::None) fail({StreamFailure::Kind::NoVideo, {}});
  if (outcome.kind == Kind::Single) co_return outcome.files.front();
  co_return co_await ask(outcome.files);
}

Flow<int> StreamCommand::ask(std::vector<int> candidates) {
  const auto files = m_session->files();
  m_status.clear();
  for (const int index : candidates)
    std::fprintf(stderr, "%s\n", qUtf8Printable(fileLine(files, index)));
  if (::isatty(STDIN_FILENO) != 1 || ::isatty(STDERR_FILENO) != 1)
    throw Ended{2, tr("Several files could be meant: say which with --file N.")};
  for (;;) {
    std::fprintf(stderr, "%s ", qUtf8Printable(tr("Which file?")));
    std::fflush(stderr);
    const auto answer = co_await readLine(m_services.pool.io());
    if (!answer) throw Ended{2, tr("Several files could be meant: say which with --file N.")};
    bool isNumber = false;
    const int index = answer->toInt(&isNumber);
    if (isNumber && std::find(candidates.begin(), candidates.end(), index) != candidates.end())
      co_return index;
  }
}

void StreamCommand::select(int file) {
  const auto files = m_session->files();
  const auto subtitles = VideoFileSelector::subtitles(files);
  const TorrentFileEntry& chosen = files[static_cast<std::size_t>(file)];
  m_wantedBytes = chosen.size;
  for (const int index : subtitles)
    if (index != file) m_wantedBytes += files[static_cast<std::size_t>(index)].size;
  if (const auto failure = checkFreeFor(m_wantedBytes, m_services.freeSpace(m_services.folder)))
    fail(*failure);
  m_session->select(file, subtitles);
  tell(QStringLiteral("FILE %1 %2 %3").arg(file).arg(chosen.size).arg(chosen.path));
}

Flow<> StreamCommand::publish(int file) {
  const auto files = m_session->files();
  const auto url =
      co_await m_services.server.url(m_session, file, files[static_cast<std::size_t>(file)].path);
  if (!url) fail(StreamFailure::noServer());
  tell(QStringLiteral("URL ") + QString::fromLatin1(url->toEncoded()));
}

Flow<> StreamCommand::follow() {
  bool toldReady = false;
  bool toldDone = false;
  StallWatch stall(m_services.clock.now());
  for (;;) {
    const SessionSnapshot snapshot = m_session->snapshot();
    // A reader may have moved on since it was ready for the first time.
    if ((m_sawReady || snapshot.streamReady) && !std::exchange(toldReady, true))
      tell(QStringLiteral("READY %1").arg(sinceStart(), 0, 'f', 3));
    if (snapshot.complete && !std::exchange(toldDone, true))
      tell(QStringLiteral("DONE %1").arg(sinceStart(), 0, 'f', 3));
    if (!toldReady && stall.hasStalled(snapshot, m_services.clock.now()))
      fail({StreamFailure::Kind::Stalled, {}});
    showStatus(snapshot);
    co_await m_changed.wait(kPoll);
  }
}

void StreamCommand::tell(const QString& line) {
  m_status.clear();
  std::printf("%s\n", qUtf8Printable(printable(line)));
  std::fflush(stdout);
}

void StreamCommand::showStatus(const SessionSnapshot& snapshot) {
  m_status.show(statusText(snapshot, m_wantedBytes));
}

} // namespace vellum
