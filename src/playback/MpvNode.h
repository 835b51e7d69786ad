// Values of libmpv as Qt's.
#pragma once
#include <QVariant>

struct mpv_node;

namespace vellum {

// Texts become QString, arrays QVariantList, maps QVariantMap, whole numbers qint64; anything else
// that is no value gives an invalid one. Any thread.
QVariant variantOf(const mpv_node& node);

} // namespace vellum
