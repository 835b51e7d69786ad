#include "net/HttpFileTransfer.h"
#include <QCoreApplication>
#include <QNetworkAccessManager>

namespace vellum {

namespace {

// Of an answer in memory; a disk that is slower than the network slows down the sender.
constexpr qint64 kReadAhead = 8 * 1024 * 1024;

constexpr std::int64_t kBetweenLooks = 16 * 1024 * 1024; // bytes, at the free space

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(HttpFileTransfer)
};

bool isOfTheWeb(const QUrl& url) {
  const bool isHttp = url.scheme() == QLatin1String("http");
  return url.isValid() && !url.host().isEmpty() &&
         (isHttp || url.scheme() == QLatin1String("https"));
}

AnswerHead headOf(const QNetworkReply& reply) {
  AnswerHead head{reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                  reply.rawHeader("Content-Range"),
                  reply.rawHeader("Content-Encoding"),
                  {}};
  const QVariant length = reply.header(QNetworkRequest::ContentLengthHeader);
  if (length.isValid()) head.contentLength = length.toLongLong();
  return head;
}

// Qt calls some whole answers an error, for their status alone. What the network did has the
// numbers below those of proxies.
bool isWholeAnswer(const QNetworkReply& reply) {
  const int status = headOf(reply).status;
  const bool isGood = status >= 200 && status <= 299;
  return status != 0 && (reply.error() == QNetworkReply::NoError ||
                         (!isGood && reply.error() >= QNetworkReply::ProxyConnectionRefusedError));
}

} // namespace

HttpFileTransfer::HttpFileTransfer(Surroundings around, TransferSource source,
                                   std::shared_ptr<SharedProgress> progress,
                                   FileTransfers::Ended ended)
    : m_around(around), m_source(std::move(source)), m_progress(std::move(progress)),
      m_ended(std::move(ended)) {
  m_patience.setSingleShot(true);
  m_patience.setInterval(around.patience);
  connect(&m_patience, &QTimer::timeout, this,
          [this] { fail(NetError::timedOut().errorDescription()); });
}

HttpFileTransfer::~HttpFileTransfer() { dropReply(); }

void HttpFileTransfer::begin() {
  if (!isOfTheWeb(m_source.url)) return fail(NetError::badURL().errorDescription());
  if (m_source.resume) {
    m_file = std::move(m_source.resume->file);
    m_validator = m_source.resume->validator;
    m_expected = m_source.resume->total;
  } else {
    std::error_code error;
    m_file = PartFile::create(m_source.folder, error);
    if (!m_file) return fail(error);
  }
  ask();
}

void HttpFileTransfer::ask() {
  QNetworkRequest request(m_source.url);
  request.setRawHeader("User-Agent", "VellumApp/1.0 (macOS)");
  request.setRawHeader("Accept-Encoding", "identity");
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  if (m_file->size() > 0) {
    request.setRawHeader("Range", "bytes=" + QByteArray::number(qint64(m_file->size())) + '-');
    request.setRawHeader("If-Range", m_validator);
  }
  m_isUnderstood = false;
  m_reply = m_around.manager.get(request);
  connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpFileTransfer::limitReadAhead);
  connect(m_reply, &QNetworkReply::readyRead, this, &HttpFileTransfer::take);
  connect(m_reply, &QNetworkReply::finished, this, &HttpFileTransfer::finish);
  // A request that waits for others to the same host is not impatient yet.
  const auto beginToWait = [this] { m_patience.start(); };
  connect(m_reply, &QNetworkReply::socketStartedConnecting, this, beginToWait);
  connect(m_reply, &QNetworkReply::requestSent, this, beginToWait);
}

// Without a known length a limit makes it likelier that Qt takes the loss of a connection for the
// end of the answer, or does not notice it at all.
void HttpFileTransfer::limitReadAhead() {
  const bool hasLength =
      headOf(*m_reply).contentLength.value_or(0) > 0 && !m_reply->hasRawHeader("Transfer-Encoding");
  m_reply->setReadBufferSize(hasLength ? kReadAhead : 0);
}

void HttpFileTransfer::take() {
  if (m_isUnderstood || understand()) readInto();
  if (m_ended) m_patience.start();
}

// False if there is nothing more to be had of this reply.
bool HttpFileTransfer::understand() {
  using Body = AnswerPlan::Body;
  const AnswerHead head = headOf(*m_reply);
  const AnswerPlan plan = planFor({m_file->size(), m_expected}, head);
  m_isUnderstood = true;
  if (plan.body == Body::BadStatus)
    return fail(NetError::http(head.status).errorDescription()), false;
  if (plan.body == Body::Unusable)
    return fail(Texts::tr("The server sent something else than the file")), false;
  if (plan.body != Body::Append) {
    m_validator = resumeValidator(m_reply->rawHeader("ETag"), m_reply->rawHeader("Last-Modified"),
                                  m_reply->rawHeader("Date"));
    if (const auto error = m_file->clear()) return fail(error), false;
  }
  m_expected = plan.expected;
  if (plan.body != Body::AskAgain) return true;
  dropReply();
  ask();
  return false;
}

void HttpFileTransfer::readInto() {
  for (;;) {
    const qint64 got = m_reply->read(m_around.room.data(), qint64(m_around.room.size()));
    if (got <= 0) break;
    if (const auto error = m_file->append({m_around.room.data(), std::size_t(got)}))
      return fail(error);
    if (!mayGoOn(got)) return fail(Texts::tr("Not enough free disk space."));
  }
  m_progress->set(m_file->size(), m_expected);
}

// An answer may be longer than was promised, and others write to the disk, too.
bool HttpFileTransfer::mayGoOn(std::int64_t written) {
  m_sinceLook += written;
  if (m_sinceLook < kBetweenLooks || !m_source.hasRoom) return true;
  m_sinceLook = 0;
  return m_source.hasRoom();
}

void HttpFileTransfer::finish() {
  const QString tooEarly = Texts::tr("The server ended the transfer early");
  const bool isLost = m_reply->error() == QNetworkReply::RemoteHostClosedError;
  if (!isWholeAnswer(*m_reply))
    return fail(m_isUnderstood && isLost ? tooEarly : m_reply->errorString());
  if (!m_isUnderstood && !understand()) return;
  readInto();
  if (!m_ended) return;
  // Qt does not always notice that an answer in chunks was cut short.
  const bool isWhole =
      m_expected > 0 ? m_file->size() == m_expected : m_file->size() >= m_source.promised;
  if (!isWhole) return fail(tooEarly);
  end(TransferFinished{std::move(m_file)});
}

void HttpFileTransfer::pause() { end(TransferPaused{resumeData()}); }

std::optional<ResumeData> HttpFileTransfer::resumeData() {
  if (!m_file || m_file->size() == 0 || m_validator.isEmpty()) return std::nullopt;
  return ResumeData{std::move(m_file), m_validator, m_expected};
}

void HttpFileTransfer::dropReply() {
  if (!m_reply) return;
  QNetworkReply* reply = std::exchange(m_reply, nullptr);
  reply->disconnect(this);
  reply->deleteLater(); // which also ends its request
}

void HttpFileTransfer::fail(const QString& reason) { end(TransferFailed{reason}); }

void HttpFileTransfer::fail(const std::error_code& error) {
  fail(QString::fromLocal8Bit(error.message().c_str()));
}

void HttpFileTransfer::end(TransferEnd end) {
  if (!m_ended) return;
  m_patience.stop();
  dropReply();
  m_file.reset();
  std::exchange(m_ended, nullptr)(std::move(end));
}

} // namespace vellum
