#include "storage/PreferenceStore.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <cmath>

namespace vellum {

namespace {
// JSON has no bytes; this is how they are told from strings.
const QString kBytes = QStringLiteral("base64");
} // namespace

PreferenceStore::PreferenceStore(QString path) : m_path(std::move(path)) { load(); }

void PreferenceStore::load() {
  QFile file(m_path);
  if (m_path.isEmpty() || !file.exists())
    return;
  const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  const QJsonDocument document = QJsonDocument::fromJson(bytes);
  m_fileIsBroken = !document.isObject();
  m_values = document.object();
}

void PreferenceStore::save() const {
  QDir().mkpath(QFileInfo(m_path).path());
  QSaveFile file(m_path);
  if (!file.open(QIODevice::WriteOnly))
    return;
  file.write(QJsonDocument(m_values).toJson());
  file.commit();
}

void PreferenceStore::put(const QString& key, const QJsonValue& value) {
  const std::lock_guard lock(m_mutex);
  m_values.insert(key, value);
  if (m_path.isEmpty())
    return;
  if (std::exchange(m_fileIsBroken, false)) {
    const QString aside = m_path + QStringLiteral(".broken");
    QFile::remove(aside);
    QFile::copy(m_path, aside);
  }
  save();
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
  const QJsonValue held = value(key);
  const double number = held.toDouble();
  if (!held.isDouble() || std::trunc(number) != number)
    return std::nullopt;
  return held.toInteger();
}

std::optional<bool> PreferenceStore::boolean(const QString& key) const {
  const QJsonValue held = value(key);
  return held.isBool() ? std::optional(held.toBool()) : std::nullopt;
}

std::optional<QByteArray> PreferenceStore::data(const QString& key) const {
  const QJsonValue held = value(key).toObject().value(kBytes);
  if (!held.isString())
    return std::nullopt;
  return QByteArray::fromBase64(held.toString().toLatin1());
}

void PreferenceStore::set(const QString& key, const QString& value) { put(key, value); }
void PreferenceStore::set(const QString& key, std::int64_t value) {
  put(key, QJsonValue(static_cast<qint64>(value)));
}
void PreferenceStore::set(const QString& key, bool value) { put(key, value); }
void PreferenceStore::set(const QString& key, const QByteArray& value) {
  put(key, QJsonObject{{kBytes, QString::fromLatin1(value.toBase64())}});
}

} // namespace vellum
