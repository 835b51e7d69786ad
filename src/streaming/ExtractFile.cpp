#include "streaming/ExtractFile.h"
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

namespace vellum {

Flow<bool> extractFile(std::shared_ptr<StreamSource> source, std::int64_t file,
                       QString destination) {
  const auto range = co_await source->fileRangeAsync(file);
  if (!range || range->length >= kExtractLimit) co_return false;
  if (!co_await source->hasRangeAsync(range->offset, std::max<std::int64_t>(range->length, 1)))
    co_return false;
  std::vector<std::byte> bytes(static_cast<std::size_t>(range->length));
  if (co_await source->readAsync(range->offset, bytes) != bytes.size()) co_return false;
  QDir().mkpath(QFileInfo(destination).path());
  QSaveFile out(destination);
  if (!out.open(QIODevice::WriteOnly)) co_return false;
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  co_return out.commit();
}

} // namespace vellum
