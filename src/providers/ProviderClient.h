// From a provider and a request to the bytes of an answer, over whichever of its addresses works.
#pragma once
#include "net/Transport.h"
#include "providers/ProviderRequest.h"
#include "storage/PreferenceStore.h"

namespace vellum {

// No state; any executor. The transport and the memory of addresses are handed in.
struct ProviderClient {
  // Why one attempt at one address gave nothing, other than by an error of the transport.
  class Failure final : public std::exception {
  public:
    enum class Case { Network, Status, Html, NotJSON };
    explicit Failure(Case kind, QString text = {}, int status = 0)
        : m_kind(kind), m_text(std::move(text)), m_status(status) {}
    Case kind() const { return m_kind; }
    const QString& text() const { return m_text; } // of Network
    int status() const { return m_status; }        // of Status
    const char* what() const noexcept override { return "no answer of the provider's format"; }

  private:
    Case m_kind;
    QString m_text;
    int m_status;
  };

  struct Answer {
    QByteArray body;
    QString address; // the one that gave it
  };

  // The usable addresses, trimmed, each once: the remembered one, the base, the mirrors.
  static QStringList candidates(const ProviderConfig& config, const PreferenceStore& memory);

  // The address that last gave good data; kept in the preferences under the provider's id.
  static std::optional<QString> lastWorking(const PreferenceStore& memory, const QUuid& id);
  static void setLastWorking(PreferenceStore& memory, const QUuid& id, const QString& address);

  // One try at one address; the body. Throws Failure, or what the transport throws.
  static Flow<QByteArray> attempt(QString base, ProviderRequest request, Transport transport);
  // One address after the other until one gives an answer, which is remembered. Throws
  // ProviderError when none did, and asio::system_error when cancelled.
  static Flow<Answer> fetch(ProviderConfig config, ProviderRequest request, Transport transport,
                            PreferenceStore& memory);
  // A short phrase for the failure of an attempt, such as "connection refused".
  static QString humanize(const std::exception& error);
};

} // namespace vellum
