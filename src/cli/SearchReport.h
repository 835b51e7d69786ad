// What a search in the terminal prints. Pure.
#pragma once
#include "models/TorrentResult.h"
#include "providers/SearchAggregator.h"

namespace vellum {

// One provider that has answered or failed, on one line: "Name: 12 results", or its sentence.
QString statusReport(const ProviderStatus& status);

// A heading and one line for each result, in columns: title, size, seeds, peers, quality, sources.
// The most seeded first. Nothing for no results.
QStringList resultReport(TorrentResults results);

} // namespace vellum
