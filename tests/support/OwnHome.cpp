// Every test program has folders of its own, gone with it: none touches the user's.
#include <QTemporaryDir>

static const struct OwnHome {
  OwnHome() {
    for (const char* name : {"VELLUM_HOME", "XDG_CACHE_HOME"})
      qputenv(name, folder.filePath(QString::fromLatin1(name)).toLocal8Bit());
  }
  const QTemporaryDir folder;
} home;
