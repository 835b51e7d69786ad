#include "streaming/ExtractFile.h"
#include "base/ReplaceFile.h"
#include <algorithm>

namespace vellum {

Flow<bool> extractFile(std::shared_ptr<StreamSource> source, std::int64_t file,
                       QString destination) {
  const auto range = co_await source->fileRangeAsync(file);
  if (!range || range->length >= kExtractLimit) co_return false;
  if (!co_await source->hasRangeAsync(range->offset, std::max<std::int64_t>(range->length, 1)))
    co_return false;
  QByteArray bytes(static_cast<qsizetype>(range->length), Qt::Uninitialized);
  const std::span into(reinterpret_cast<std::byte*>(bytes.data()), std::size_t(bytes.size()));
  if (co_await source->readAsync(range->offset, into) != into.size()) co_return false;
  co_return replaceFile(destination, bytes, Privacy::Everybody);
}

} // namespace vellum
