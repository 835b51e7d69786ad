// The XML of Torznab indexers, read event by event. Pure; one object for each document.
#pragma once
#include "base/DescribedError.h"
#include "providers/ResultList.h"
#include <QHash>
#include <QXmlStreamAttributes>

namespace vellum {

// What the indexer itself complains about, in its own words.
class IndexerError final : public DescribedError {
public:
  IndexerError(int code, QString text) : DescribedError(std::move(text)), m_code(code) {}
  int code() const { return m_code; }

private:
  int m_code;
};

class TorznabParser {
public:
  explicit TorznabParser(QString source) : m_source(std::move(source)) {}

  // Element names as the document writes them, prefix included.
  void startElement(QStringView name, const QXmlStreamAttributes& attributes);
  void characters(QStringView text) { m_text += text; }
  void endElement(QStringView name);

  const std::optional<IndexerError>& apiError() const { return m_apiError; }
  bool isFull() const { return m_results.isFull(); } // makes no more of what follows
  TorrentResults takeResults() { return m_results.take(); }

private:
  using Row = QHash<QString, QString>;
  static std::optional<TorrentResult> result(const Row& row, const QString& source);

  QString m_source;
  ResultList m_results; // in document order
  std::optional<IndexerError> m_apiError;
  std::optional<Row> m_row; // nothing outside an item
  QString m_text;           // of the current element
};

} // namespace vellum
