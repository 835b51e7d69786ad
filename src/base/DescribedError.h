// The base of every failure that comes with a sentence for the user.
#pragma once
#include <QByteArray>
#include <QString>
#include <exception>

namespace vellum {

// A value; any thread.
class DescribedError : public std::exception {
public:
  explicit DescribedError(QString text) : m_text(std::move(text)), m_utf8(m_text.toUtf8()) {}

  const QString& errorDescription() const { return m_text; }
  const char* what() const noexcept override { return m_utf8.constData(); }

private:
  QString m_text;
  QByteArray m_utf8;
};

} // namespace vellum
