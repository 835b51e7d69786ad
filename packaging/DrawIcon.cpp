// Draws the icon of the program as pictures, while a package is built: SVG [SIZE PNG]…
#include <QCoreApplication>
#include <QImageReader>
#include <cstdio>

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv); // finds the plugin that reads SVG
  const QStringList given = QCoreApplication::arguments().sliced(1);
  for (qsizetype i = 1; i + 1 < given.size(); i += 2) {
    QImageReader reader(given[0]);
    const int size = given[i].toInt();
    reader.setScaledSize({size, size});
    const QImage image = reader.read();
    if (image.width() != size || !image.save(given[i + 1])) {
      std::fprintf(stderr, "%s: %s\n", qUtf8Printable(given[i + 1]),
                   qUtf8Printable(reader.errorString()));
      return 1;
    }
  }
  return 0;
}
