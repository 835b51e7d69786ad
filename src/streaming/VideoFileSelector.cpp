#include "streaming/VideoFileSelector.h"
#include "streaming/PathExtension.h"
#include <QStringList>
#include <algorithm>
#include <iterator>

namespace vellum {

namespace {

const QStringList& videoExts() {
  static const QStringList list{
      QStringLiteral("mkv"), QStringLiteral("mp4"),  QStringLiteral("m4v"), QStringLiteral("avi"),
      QStringLiteral("mov"), QStringLiteral("webm"), QStringLiteral("ts")};
  return list;
}

const QStringList& subtitleExts() {
  static const QStringList list{QStringLiteral("srt"), QStringLiteral("vtt"), QStringLiteral("ass"),
                                QStringLiteral("ssa"), QStringLiteral("sub")};
  return list;
}

const QStringList& excludedWords() {
  static const QStringList list{QStringLiteral("sample"), QStringLiteral("trailer"),
                                QStringLiteral("extras")};
  return list;
}

std::vector<int> withExtension(const std::vector<TorrentFileEntry>& files,
                               const QStringList& extensions) {
  std::vector<int> found;
  for (std::size_t i = 0; i < files.size(); ++i)
    if (extensions.contains(pathExtension(files[i].path))) found.push_back(static_cast<int>(i));
  return found;
}

bool isExcluded(const QString& path) {
  const QString lower = path.toLower();
  return std::any_of(excludedWords().begin(), excludedWords().end(),
                     [&](const QString& word) { return lower.contains(word); });
}

// The run of digits at `at`, without leading zeros; moves `at` behind it.
QStringView digitsAt(QStringView text, qsizetype& at) {
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  while (at < text.size() && text[at] == u'0') ++at;
  const qsizetype start = at;
  while (at < text.size() && isDigit(text[at])) ++at;
  return text.mid(start, at - start);
}

// Case-insensitive, runs of digits by their value however long they are.
bool naturalLess(const QString& left, const QString& right) {
  const QString a = left.toCaseFolded();
  const QString b = right.toCaseFolded();
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  qsizetype i = 0;
  qsizetype j = 0;
  while (i < a.size() && j < b.size()) {
    if (isDigit(a[i]) && isDigit(b[j])) {
      const QStringView x = digitsAt(a, i);
      const QStringView y = digitsAt(b, j);
      if (x.size() != y.size()) return x.size() < y.size();
      if (x != y) return x < y;
    } else {
      if (a[i] != b[j]) return a[i] < b[j];
      ++i;
      ++j;
    }
  }
  return a.size() - i < b.size() - j;
}

// `part` out of `whole` is at least 1 in `ratio`, without multiplying what could overflow.
bool isAtLeastOneIn(std::int64_t ratio, std::int64_t part, std::int64_t whole) {
  return part >= whole / ratio + (whole % ratio > 0 ? 1 : 0);
}

} // namespace

std::vector<int> VideoFileSelector::candidates(const std::vector<TorrentFileEntry>& files) {
  const auto sizeOf = [&](int index) { return files[static_cast<std::size_t>(index)].size; };
  const std::vector<int> videos = withExtension(files, videoExts());
  std::vector<int> kept;
  std::copy_if(videos.begin(), videos.end(), std::back_inserter(kept),
               [&](int index) { return !isExcluded(files[static_cast<std::size_t>(index)].path); });
  // A torrent of nothing but samples still plays.
  if (kept.empty()) kept = videos;
  std::int64_t largest = 0;
  for (const int index : kept) largest = std::max(largest, sizeOf(index));
  std::erase_if(kept, [&](int index) { return !isAtLeastOneIn(10, sizeOf(index), largest); });
  return kept;
}

std::vector<int> VideoFileSelector::subtitles(const std::vector<TorrentFileEntry>& files) {
  return withExtension(files, subtitleExts());
}

VideoFileSelector::Outcome VideoFileSelector::select(const std::vector<TorrentFileEntry>& files) {
  const auto entry = [&](int index) -> const TorrentFileEntry& {
    return files[static_cast<std::size_t>(index)];
  };
  std::vector<int> found = candidates(files);
  if (found.empty()) return {};
  std::stable_sort(found.begin(), found.end(),
                   [&](int a, int b) { return entry(a).size > entry(b).size; });
  // Files of like weight are what a season looks like; a film with a big extra does not ask.
  const bool isSeason =
      found.size() > 1 && isAtLeastOneIn(2, entry(found[1]).size, entry(found[0]).size);
  if (!isSeason) return {Outcome::Kind::Single, {found.front()}};
  std::stable_sort(found.begin(), found.end(),
                   [&](int a, int b) { return naturalLess(entry(a).path, entry(b).path); });
  return {Outcome::Kind::Choose, std::move(found)};
}

} // namespace vellum
