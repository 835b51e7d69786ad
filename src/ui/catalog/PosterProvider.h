// Posters as QML asks for them: "image://poster/" and the address in base 64.
#pragma once
#include "ui/catalog/PosterLoader.h"
#include <QQuickAsyncImageProvider>

namespace vellum::ui {

// Given to the QML engine, which owns it and asks from a thread of its own. A poster that is not to
// be had is a single clear point: films without one are no error to complain of on the console.
class PosterProvider final : public QQuickAsyncImageProvider {
  Q_OBJECT

public:
  static constexpr int kWidth = 400; // pixels, for a picture that says no width

  // Pool and clock outlive it. `fetch` gives no more than PosterLoader::kLargestBody.
  PosterProvider(IoPool& pool, FetchData fetch, const Clock& clock)
      : m_loader(pool, std::move(fetch), clock) {}

  static QString name() { return QStringLiteral("poster"); }

  QQuickImageResponse* requestImageResponse(const QString& id, const QSize& size) override;

private:
  PosterLoader m_loader;
};

} // namespace vellum::ui
