// The film catalog: its queries, its records, and what they mean.
#pragma once
#include "models/MediaItem.h"
#include "net/FetchData.h"
#include <QJsonValue>

namespace vellum {

// One page of a catalog search.
struct CatalogQuery {
  std::optional<QString> text;  // of the user
  std::optional<QString> extra; // one more clause of the query language
  QString sort = QStringLiteral("downloads desc");
  int rows = 0; // at least 0
  int page = 1;
  bool operator==(const CatalogQuery&) const = default;
};

// No state but the way to fetch; any executor. Parses where it is awaited: keep large answers off
// the main thread. A body beyond the fetch's limit counts as one that is no catalog answer.
class ArchiveOrgProvider {
public:
  static constexpr std::chrono::seconds kSearchTimeout{15};
  static constexpr std::chrono::seconds kDetailsTimeout{20};

  explicit ArchiveOrgProvider(FetchData fetch) : m_fetch(std::move(fetch)) {}

  // No more items than rows. Throws NetError, and asio::system_error when cancelled. An answer of
  // another shape has no items.
  Flow<MediaItems> search(CatalogQuery query) const;
  // Throws the same, and NetError (Empty) for an answer that is no record.
  Flow<ArchiveDetails> details(QString id) const;

  // Pure:
  static QString buildQuery(const std::optional<QString>& text,
                            const std::optional<QString>& extra);
  // The words and numbers of a text; nothing of the query language is left in them.
  static QStringList sanitize(const QString& text);
  static MediaItems parseSearch(const QByteArray& bytes);
  static std::optional<ArchiveDetails> parseDetails(const QByteArray& bytes, const QString& id);
  // Values in the catalog are loose: a string, a number, or an array of either.
  static std::optional<QString> first(const QJsonValue& value);

private:
  static Flow<QByteArray> fetch(FetchData fetch, QUrl url, std::chrono::seconds timeout);

  FetchData m_fetch;
};

} // namespace vellum
