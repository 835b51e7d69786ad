#include "app/Suggestions.h"
#include <QHash>
#include <QTextBoundaryFinder>
#include <algorithm>

namespace vellum {

namespace {

constexpr qsizetype kSubjectsOfAnItem = 100;
constexpr qsizetype kUnitsOfACharacter = 16; // at most, of a character that anybody would write

struct Subject {
  QString text;
  int count = 0;
};

// As a reader counts: an accent is no character of its own.
int characterCount(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  int count = 0;
  while (finder.toNextBoundary() >= 0) ++count;
  return count;
}

std::vector<Subject> countedSubjects(std::initializer_list<const MediaItems*> shelves) {
  std::vector<Subject> subjects;
  QHash<QString, std::size_t> known;
  for (const MediaItems* shelf : shelves)
    for (const MediaItem& item : *shelf)
      for (const QString& subject : item.subjects.mid(0, kSubjectsOfAnItem)) {
        const QStringView trimmed = QStringView(subject).trimmed();
        if (trimmed.size() > kLongestSubject * kUnitsOfACharacter) continue;
        const QString text = trimmed.toString().toLower();
        const auto found = known.constFind(text);
        if (found != known.constEnd()) {
          ++subjects[*found].count;
          continue;
        }
        const int length = characterCount(text);
        if (length < kShortestSubject || length > kLongestSubject) continue;
        known.insert(text, subjects.size());
        subjects.push_back({text, 1});
      }
  return subjects;
}

} // namespace

QStringList frequentSubjects(std::initializer_list<const MediaItems*> shelves, std::size_t limit) {
  auto subjects = countedSubjects(shelves);
  std::stable_sort(subjects.begin(), subjects.end(),
                   [](const Subject& a, const Subject& b) { return a.count > b.count; });
  QStringList texts;
  for (std::size_t i = 0; i < std::min(limit, subjects.size()); ++i) texts.append(subjects[i].text);
  return texts;
}

} // namespace vellum
