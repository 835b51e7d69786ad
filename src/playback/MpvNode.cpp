#include "playback/MpvNode.h"
#include <mpv/client.h>
#include <span>

namespace vellum {

namespace {

// Nothing that is asked for is deeper than a list of maps.
constexpr int kDeepest = 8;

QVariant convert(const mpv_node& node, int depth);

QVariant listOf(const mpv_node_list& list, int depth) {
  QVariantList values;
  for (const auto& value : std::span(list.values, static_cast<std::size_t>(list.num)))
    values.append(convert(value, depth + 1));
  return values;
}

QVariant mapOf(const mpv_node_list& list, int depth) {
  QVariantMap values;
  for (int i = 0; i < list.num; ++i)
    values.insert(QString::fromUtf8(list.keys[i]), convert(list.values[i], depth + 1));
  return values;
}

QVariant convert(const mpv_node& node, int depth) {
  if (depth > kDeepest) return {};
  switch (node.format) {
  case MPV_FORMAT_STRING: return QString::fromUtf8(node.u.string);
  case MPV_FORMAT_FLAG: return node.u.flag != 0;
  case MPV_FORMAT_INT64: return static_cast<qint64>(node.u.int64);
  case MPV_FORMAT_DOUBLE: return node.u.double_;
  case MPV_FORMAT_NODE_ARRAY: return listOf(*node.u.list, depth);
  case MPV_FORMAT_NODE_MAP: return mapOf(*node.u.list, depth);
  default: return {};
  }
}

} // namespace

QVariant variantOf(const mpv_node& node) { return convert(node, 0); }

} // namespace vellum
