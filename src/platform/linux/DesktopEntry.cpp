#include "platform/linux/DesktopEntry.h"
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace vellum::desktopEntry {

namespace {

constexpr qint64 kLargestFile = 1 << 20; // bytes

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.read(kLargestFile) : QByteArray();
}

// The value of a key in a group; nothing if either is missing.
std::optional<QString> value(const QByteArray& text, const QByteArray& group,
                             const QByteArray& key) {
  bool isInGroup = false;
  for (const QByteArray& untrimmed : text.split('\n')) {
    const QByteArray line = untrimmed.trimmed();
    const qsizetype equals = line.indexOf('=');
    if (line.startsWith('['))
      isInGroup = line == '[' + group + ']';
    else if (isInGroup && equals > 0 && line.first(equals).trimmed() == key)
      return QString::fromUtf8(line.sliced(equals + 1).trimmed());
  }
  return {};
}

// An argument of an Exec line with its field codes replaced; `took` tells if the address was one.
QString expanded(const QString& argument, const QString& address, bool& took) {
  QString out;
  for (qsizetype i = 0; i < argument.size(); ++i) {
    if (argument[i] != u'%' || i + 1 == argument.size()) {
      out += argument[i];
      continue;
    }
    const QChar code = argument[++i];
    if (code == u'%') {
      out += code;
    } else if (QStringView(u"uUfF").contains(code)) {
      out += address;
      took = true;
    }
  }
  return out;
}

} // namespace

std::optional<QStringList> command(const QByteArray& entry, const QString& address) {
  const QByteArray group = "Desktop Entry";
  const auto exec = value(entry, group, "Exec");
  if (!exec || value(entry, group, "Hidden") == QLatin1String("true")) return {};
  QStringList out;
  bool took = false;
  for (const QString& argument : QProcess::splitCommand(*exec)) {
    const QString text = expanded(argument, address, took);
    // An argument that was a field code alone goes with it.
    if (!text.isEmpty() || argument.isEmpty()) out += text;
  }
  if (out.isEmpty() || out.first().isEmpty() || out.first() == address) return {};
  if (!took) out += address;
  return out;
}

QStringList associations(const QByteArray& list, const QByteArray& group, const QString& type) {
  return value(list, group, type.toUtf8()).value_or(QString()).split(u';', Qt::SkipEmptyParts);
}

std::optional<QStringList> installedCommand(const QString& entryName, const QString& address) {
  const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entryName);
  if (path.isEmpty()) return {};
  return command(contents(path), address);
}

std::optional<QStringList> defaultCommand(const QString& type, const QString& address) {
  const QStringList chosen = QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation,
                                                       QStringLiteral("mimeapps.list")) +
                             QStandardPaths::locateAll(QStandardPaths::ApplicationsLocation,
                                                       QStringLiteral("mimeapps.list"));
  const QStringList known = QStandardPaths::locateAll(QStandardPaths::ApplicationsLocation,
                                                      QStringLiteral("mimeinfo.cache"));
  QStringList entries;
  for (const char* group : {"Default Applications", "Added Associations"})
    for (const QString& path : chosen) entries += associations(contents(path), group, type);
  for (const QString& path : known) entries += associations(contents(path), "MIME Cache", type);
  entries.removeAll(QStringLiteral("vellum.desktop"));
  for (const QString& entry : entries)
    if (auto found = installedCommand(entry, address)) return found;
  return {};
}

} // namespace vellum::desktopEntry
