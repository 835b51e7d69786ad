#include "storage/PreferenceStore.h"
#include "base/ReplaceFile.h"
#include <QFile>
#include <QJsonDocument>

namespace vellum {

namespace {
// JSON has no bytes; this is how they are told from strings.
const QString kBytes = QStringLiteral("base64");
} // namespace

PreferenceStore::PreferenceStore(QString path) : m_path(std::move(path)) { load(); }

void PreferenceStore::load() {
  QFile file(m_path);
  if (m_path.isEmpty() || !file.exists()) return;
  const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  const QJsonDocument document = QJsonDocument::fromJson(bytes);
  m_fileIsBroken = !document.isObject();
  m_values = document.object();
}

void PreferenceStore::save(const QJsonObject& values) {
  if (m_fileIsBroken && !putBrokenFileAside()) return;
  replaceFile(m_path, QJsonDocument(values).toJson(), Privacy::OwnerOnly); // with providers' keys
}

bool PreferenceStore::putBrokenFileAside() {
  const QString aside = m_path + QStringLiteral(".broken");
  QFile::remove(aside);
  // What may not even be read can still be renamed.
  m_fileIsBroken = !QFile::copy(m_path, aside) && !QFile::rename(m_path, aside);
  return !m_fileIsBroken;
}

void PreferenceStore::put(const QString& key, const QJsonValue& value) {
  const std::lock_guard writing(m_writing);
  QJsonObject values;
  {
    const std::lock_guard lock(m_mutex);
    m_values.insert(key, value);
    values = m_values;
  }
  if (!m_path.isEmpty()) save(values);
}

QJsonValue PreferenceStore::value(const QString& key) const {
  const std::lock_guard lock(m_mutex);
  return m_values.value(key);
}

std::optional<QString> PreferenceStore::string(const QString& key) const {
  const QJsonValue held = value(key);
  return held.isString() ? std::optional(held.toString()) : std::nullopt;
}

std::optional<std::int64_t> PreferenceStore::integer(const QString& key) const {
  // What is no integer, or too large for one, gives whatever default is named.
  const QJsonValue held = value(key);
  const std::int64_t number = held.toInteger(0);
  return number == held.toInteger(1) ? std::optional(number) : std::nullopt;
}

std::optional<double> PreferenceStore::real(const QString& key) const {
  const QJsonValue held = value(key);
  return held.isDouble() ? std::optional(held.toDouble()) : std::nullopt;
}

std::optional<bool> PreferenceStore::boolean(const QString& key) const {
  const QJsonValue held = value(key);
  return held.isBool() ? std::optional(held.toBool()) : std::nullopt;
}

std::optional<QByteArray> PreferenceStore::data(const QString& key) const {
  const QJsonValue held = value(key).toObject().value(kBytes);
  if (!held.isString()) return std::nullopt;
  const auto decoded = QByteArray::fromBase64Encoding(held.toString().toLatin1(),
                                                      QByteArray::AbortOnBase64DecodingErrors);
  return decoded ? std::optional(decoded.decoded) : std::nullopt;
}

void PreferenceStore::set(const QString& key, const QString& value) { put(key, value); }
void PreferenceStore::set(const QString& key, std::int64_t value) {
  put(key, QJsonValue(static_cast<qint64>(value)));
}
void PreferenceStore::set(const QString& key, double value) { put(key, value); }
void PreferenceStore::set(const QString& key, const QByteArray& value) {
  put(key, QJsonObject{{kBytes, QString::fromLatin1(value.toBase64())}});
}

} // namespace vellum
