// Quick search words from the catalog's own subjects. Pure.
#pragma once
#include "models/MediaItem.h"
#include <initializer_list>

namespace vellum {

inline constexpr int kShortestSubject = 3; // characters
inline constexpr int kLongestSubject = 23;

// The subjects of all items (the first hundred of each) in lower case, the most frequent first,
// those of equal count in order of appearance; no more than `limit`.
QStringList frequentSubjects(std::initializer_list<const MediaItems*> shelves, std::size_t limit);

} // namespace vellum
