// The user's preferences as typed values under keys, kept in one JSON file.
#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <concepts>
#include <mutex>
#include <optional>

namespace vellum {

// Any thread. Every write replaces the file as a whole, atomically; a failure to write is passed
// over. A file that cannot be read counts as empty, and is put aside ("….broken", in place of an
// earlier one) before it is first written over. A bool, a number, a string and bytes stay apart; a
// whole number is an integer and a double alike.
class PreferenceStore {
public:
  // An empty path: nothing is read and nothing outlives the store.
  explicit PreferenceStore(QString path = {});
  PreferenceStore(const PreferenceStore&) = delete;
  PreferenceStore& operator=(const PreferenceStore&) = delete;

  // Nothing if the key is missing or its value has another type. A reader never waits for the disk.
  std::optional<QString> string(const QString& key) const;
  std::optional<std::int64_t> integer(const QString& key) const;
  std::optional<double> real(const QString& key) const;
  std::optional<bool> boolean(const QString& key) const;
  std::optional<QByteArray> data(const QString& key) const;

  void set(const QString& key, const QString& value);
  void set(const QString& key, std::int64_t value);
  void set(const QString& key, double value); // finite
  // A bool and nothing else: a character pointer would silently become one.
  void set(const QString& key, std::same_as<bool> auto value) { put(key, QJsonValue(value)); }
  void set(const QString& key, const QByteArray& value);

private:
  QJsonValue value(const QString& key) const;
  void put(const QString& key, const QJsonValue& value);
  void load();
  void save(const QJsonObject& values);
  bool putBrokenFileAside();

  const QString m_path;
  std::mutex m_writing; // taken before m_mutex; guards the file and m_fileIsBroken
  bool m_fileIsBroken = false;
  mutable std::mutex m_mutex; // guards m_values; never held while the disk works
  QJsonObject m_values;
};

} // namespace vellum
