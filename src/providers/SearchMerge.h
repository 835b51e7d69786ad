// Results of several providers folded into one list. Pure.
#pragma once
#include "models/TorrentResult.h"

namespace vellum {

// One row for each info hash, whatever its case (or id, where there is no hash), in the order of
// first appearance. A row keeps what it was first seen with, takes what it lacked from later ones,
// and has the greatest counts of them all. Linear.
TorrentResults mergeResults(TorrentResults results);

} // namespace vellum
