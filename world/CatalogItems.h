// What the loopback catalog holds: made-up items of every kind that the real one has. Pure.
#pragma once
#include <QString>
#include <QStringList>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace vellum::world {

struct CatalogItemFile {
  QString name;          // may hold "/"
  QString format;        // "h.264"
  std::int64_t size = 0; // bytes
  // What a download gives; empty: it is listed, and not there.
  std::filesystem::path path;
};

struct CatalogItem {
  QString id;
  QString title;
  int year = 0;
  QString collection;
  QStringList creators;
  QStringList subjects;
  QString description; // with markup
  QString licence;     // an address; may be empty
  std::int64_t downloads = 0;
  std::int64_t week = 0; // downloads of the last one
  bool restricted = false;
  std::vector<CatalogItemFile> files;
};

using CatalogItems = std::vector<CatalogItem>;

// Some forty films over eight collections, always the same. The first, VellumDemoFilm, has the
// files of `folder`, with their real sizes; so do the others with its film under their own names,
// but for one of MKV files alone, one without any video and one restricted, which have theirs in
// name only. Without a folder every file is there in name only.
CatalogItems inventedItems(const std::filesystem::path& folder);

} // namespace vellum::world
