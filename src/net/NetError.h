// Why a plain download failed, with the sentence that the user reads.
#pragma once
#include <QByteArray>
#include <QString>
#include <exception>

namespace vellum {

// A value; any thread.
class NetError : public std::exception {
public:
  static NetError http(int status);       // "HTTP 500"
  static NetError badURL();               // "Invalid URL"
  static NetError empty();                // "Empty response"
  static NetError tooLarge();             // a body that nobody should have to hold
  static NetError timedOut();             // no whole answer within the time given
  static NetError platform(QString text); // the platform's own wording

  const QString& errorDescription() const { return m_text; }
  // The status of an answer outside 200 to 299, else 0.
  int status() const { return m_status; }
  const char* what() const noexcept override { return m_utf8.constData(); }

private:
  explicit NetError(QString text, int status = 0)
      : m_text(std::move(text)), m_utf8(m_text.toUtf8()), m_status(status) {}

  QString m_text;
  QByteArray m_utf8;
  int m_status;
};

} // namespace vellum
