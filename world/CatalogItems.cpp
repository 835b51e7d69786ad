#include "world/CatalogItems.h"
#include <algorithm>
#include <array>

namespace vellum::world {

namespace {

namespace fs = std::filesystem;

struct Row {
  const char* collection;
  const char* title;
  int year;
  const char* subjects;
};

constexpr std::array<Row, 40> kRows{{
    {"feature_films", "Vellum Demo Film", 2026, "demo;test pattern;film"},
    {"feature_films", "The Lantern Keeper", 1931, "drama;lighthouse"},
    {"feature_films", "Salt on the Window", 1948, "drama;sea"},
    {"feature_films", "A Ferry to Nowhere", 1952, "adventure;river;drama"},
    {"feature_films", "The Glass Orchard", 1957, "romance;orchard"},
    {"feature_films", "Queen of the Sawdust Ring", 1933, "circus;drama"},
    {"feature_films", "Ballad of a Lost Trumpet", 1955, "music;jazz"},
    {"silent_films", "Winter Comes to Marrow", 1928, "silent;snow"},
    {"silent_films", "The Silent Semaphore", 1924, "silent;railway"},
    {"silent_films", "The Moth and the Candle", 1926, "silent;romance"},
    {"silent_films", "One Reel of Courage", 1919, "silent;western"},
    {"silent_films", "The Great Train to Ostry", 1915, "silent;railway;train"},
    {"film_noir", "Midnight in Harrow Lane", 1946, "noir;crime"},
    {"film_noir", "Shadow Over Vinter Street", 1944, "noir;crime;city"},
    {"film_noir", "Letters to an Empty House", 1949, "noir;mystery"},
    {"film_noir", "The Copper Canary", 1947, "noir;detective"},
    {"film_noir", "Four Strangers, One Key", 1951, "noir;heist"},
    {"SciFi_Horror", "Invaders of the Ninth Moon", 1954, "science fiction;space"},
    {"SciFi_Horror", "The Thing Below Pier Six", 1959, "horror;sea;monster"},
    {"SciFi_Horror", "Robots Do Not Dream of Rain", 1963, "science fiction;robots"},
    {"SciFi_Horror", "Haunted Typewriter", 1958, "horror;ghosts"},
    {"SciFi_Horror", "The Astronomer's Daughter", 1962, "science fiction;romance"},
    {"classic_tv", "Harbour Lights, Episode 1", 1953, "television;drama"},
    {"classic_tv", "The Mayor of Pudding Hill, Pilot", 1956, "television;comedy"},
    {"classic_tv", "Quiz Time at Calloway Hall", 1957, "television;quiz"},
    {"classic_tv", "Sergeant Finch Investigates", 1960, "television;detective;crime"},
    {"classic_tv", "Stage Door Theatre: The Debt", 1951, "television;theatre"},
    {"animationandcartoons", "Barnaby Mouse Goes Fishing", 1934, "cartoon;mouse"},
    {"animationandcartoons", "The Inkwell Orchestra", 1932, "cartoon;music"},
    {"animationandcartoons", "Moonbeam Mail", 1938, "cartoon;space"},
    {"animationandcartoons", "Three Turnips and a Fiddle", 1936, "cartoon;farm"},
    {"prelinger", "Your Friend the Switchboard", 1949, "educational;telephone"},
    {"prelinger", "Safety at the Crossing", 1951, "educational;railway;safety"},
    {"prelinger", "How a City Wakes", 1940, "city;industry"},
    {"prelinger", "Posture for the Office", 1947, "educational;work"},
    {"comedy_films", "Too Many Umbrellas", 1937, "comedy;rain"},
    {"comedy_films", "The Baker's Alibi", 1950, "comedy;crime"},
    {"comedy_films", "Seven Paper Boats", 1961, "comedy;children"},
    {"comedy_films", "Uncle Osgood Buys a Zoo", 1942, "comedy;animals"},
    {"comedy_films", "The Wrong Violin", 1945, "comedy;music"},
}};
constexpr std::size_t kDemo = 0;
constexpr std::size_t kRestricted = 3;
constexpr std::size_t kMkvOnly = 10;
constexpr std::size_t kNoVideo = 33;

constexpr std::array<const char*, 5> kLicences{"https://creativecommons.org/publicdomain/mark/1.0/",
                                               "https://creativecommons.org/licenses/by/4.0/", "",
                                               "http://creativecommons.org/publicdomain/zero/1.0/",
                                               "https://creativecommons.org/licenses/by-sa/3.0/"};
constexpr std::array<const char*, 4> kMakers{"Ottoline Marsh", "Calloway Pictures",
                                             "Ferdinand Rook", "The Harrow Lane Company"};

QString formatOf(const fs::path& path) {
  const fs::path ending = path.extension();
  if (ending == ".mp4") return QStringLiteral("h.264");
  if (ending == ".mkv") return QStringLiteral("Matroska");
  if (ending == ".srt") return QStringLiteral("SubRip");
  if (ending == ".vtt") return QStringLiteral("Web Video Text Tracks");
  return QStringLiteral("Data");
}

std::vector<CatalogItemFile> filesIn(const fs::path& folder) {
  std::vector<CatalogItemFile> files;
  if (folder.empty()) return files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && entry.file_size() > 0)
      files.push_back({QString::fromStdString(entry.path().lexically_relative(folder).string()),
                       formatOf(entry.path()), std::int64_t(entry.file_size()), entry.path()});
  std::ranges::sort(files, {}, &CatalogItemFile::name);
  return files;
}

std::vector<CatalogItemFile> filesOf(std::size_t row, const QString& id,
                                     const std::vector<CatalogItemFile>& demo) {
  const auto named = [&](const char* ending, const char* format, std::int64_t size) {
    return CatalogItemFile{id + QLatin1String(ending), QLatin1String(format), size, {}};
  };
  std::vector<CatalogItemFile> files{named("_meta.xml", "Metadata", 1'204),
                                     named(".thumbs/001.jpg", "Thumbnail", 6'120)};
  if (row == kNoVideo) return files;
  if (row == kMkvOnly) {
    files.push_back(named(".mkv", "Matroska", 812'646'400));
    files.push_back(named(" part 2.mkv", "Matroska", 640'221'184));
    return files;
  }
  files.push_back(named(".ogv", "Ogg Video", 402'653'184));
  files.push_back(named("_512kb.mp4", "512Kb MPEG4", 268'435'456));
  auto film = named(".mp4", "h.264", 734'003'200);
  for (const CatalogItemFile& file : demo)
    if (row != kRestricted && file.format == film.format)
      film = {film.name, film.format, file.size, file.path};
  files.push_back(std::move(film));
  return files;
}

CatalogItem item(std::size_t index, const std::vector<CatalogItemFile>& demo) {
  const Row& row = kRows[index];
  CatalogItem item{.title = QString::fromLatin1(row.title), .year = row.year};
  for (const QChar c : item.title)
    if (c.isLetterOrNumber()) item.id += c;
  if (index != kDemo) item.id += QString::number(row.year);
  item.collection = QString::fromLatin1(row.collection);
  item.creators = {QString::fromLatin1(kMakers[index % kMakers.size()])};
  if (index % 5 == 0) item.creators.append(QString::fromLatin1("and others"));
  item.subjects = QString::fromLatin1(row.subjects).split(u';');
  item.description = QStringLiteral("<p><b>%1</b> (%2), from a print that was found in an attic."
                                    "<br/>Keywords: %3 &amp; more.</p>")
                         .arg(item.title, QString::number(row.year), item.subjects.join(u' '));
  item.licence = QString::fromLatin1(kLicences[index % kLicences.size()]);
  // Two orders that differ from each other and from that of the list, without ties; the demo film
  // leads the first.
  item.downloads = 1000 + std::int64_t((index * 17 + kRows.size() - 1) % kRows.size()) * 1234;
  item.week = 10 + std::int64_t((index * 23 + kRows.size() - 4) % kRows.size()) * 7;
  item.restricted = index == kRestricted;
  item.files = index == kDemo && !demo.empty() ? demo : filesOf(index, item.id, demo);
  return item;
}

} // namespace

CatalogItems inventedItems(const fs::path& folder) {
  const auto demo = filesIn(folder);
  CatalogItems items;
  for (std::size_t i = 0; i < kRows.size(); ++i) items.push_back(item(i, demo));
  return items;
}

} // namespace vellum::world
