// The failure of a whole provider, after all its addresses were tried.
#pragma once
#include "base/DescribedError.h"

namespace vellum {

// A value; any thread. Its sentence tells what to do in the settings.
class ProviderError final : public DescribedError {
public:
  enum class Case { NotConfigured, Unreachable, WebPage, NotJSON, UnexpectedFormat };

  static ProviderError notConfigured(const QString& name);
  static ProviderError unreachable(const QString& name, const QString& host, const QString& detail);
  static ProviderError webPage(const QString& name, const QString& host);
  static ProviderError notJSON(const QString& name, const QString& host);
  static ProviderError unexpectedFormat(const QString& name);

  Case kind() const { return m_kind; }
  // What happened last, for whoever looks closer; no part of the sentence. Empty but for
  // Unreachable.
  const QString& detail() const { return m_detail; }

private:
  ProviderError(Case kind, const QString& text, QString detail = {})
      : DescribedError(text), m_kind(kind), m_detail(std::move(detail)) {}

  Case m_kind;
  QString m_detail;
};

} // namespace vellum
