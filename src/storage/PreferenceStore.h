// The user's preferences as typed values under keys, kept in one JSON file.
#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <mutex>
#include <optional>

namespace vellum {

// Any thread. Every write replaces the file as a whole, atomically. A file that cannot be read
// counts as empty, and is put aside ("….broken") before it is first written over.
class PreferenceStore {
public:
  // An empty path: nothing is read and nothing outlives the store.
  explicit PreferenceStore(QString path = {});

  // Nothing if the key is missing or its value has another type.
  std::optional<QString> string(const QString& key) const;
  std::optional<std::int64_t> integer(const QString& key) const;
  std::optional<bool> boolean(const QString& key) const;
  std::optional<QByteArray> data(const QString& key) const;

  void set(const QString& key, const QString& value);
  void set(const QString& key, std::int64_t value);
  void set(const QString& key, bool value);
  void set(const QString& key, const QByteArray& value);

private:
  QJsonValue value(const QString& key) const;
  void put(const QString& key, const QJsonValue& value);
  void load();
  void save() const;

  const QString m_path;
  mutable std::mutex m_mutex; // guards m_values, m_fileIsBroken and the file
  QJsonObject m_values;
  bool m_fileIsBroken = false;
};

} // namespace vellum
