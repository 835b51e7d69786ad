// The language in which the window speaks.
#pragma once
#include <QLocale>
#include <QStringList>

class QCoreApplication;

namespace vellum {

// Main thread. Call once, after the application object exists and before any text is made. The
// first of these languages that there are texts in; English needs none.
void speak(QCoreApplication& app, const QStringList& languages = QLocale::system().uiLanguages());

} // namespace vellum
