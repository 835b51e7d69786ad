// vellum's single start without the rest: OneStart FOLDER LINK… prints what became of it, and as
// the running one each link that another start hands over, until its standard input ends.
#include "desktop/SingleInstance.h"
#include <QCoreApplication>
#include <QSocketNotifier>
#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  vellum::SingleInstance instance({app.arguments().value(1), std::chrono::seconds(20)});
  const auto say = [](const QByteArray& line) {
    std::puts(line.constData());
    std::fflush(stdout);
  };
  QObject::connect(&instance, &vellum::SingleInstance::opened, &app,
                   [&](const QStringList& links) { say("opened " + links.join(u' ').toUtf8()); });
  using Start = vellum::SingleInstance::Start;
  const Start start = instance.start(app.arguments().sliced(2));
  if (start != Start::First) return say(start == Start::HandedOver ? "over" : "unanswered"), 0;
  say("first");
  const QSocketNotifier end(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&end, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
  return QCoreApplication::exec();
}
