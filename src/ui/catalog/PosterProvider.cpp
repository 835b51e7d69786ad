#include "ui/catalog/PosterProvider.h"
#include <mutex>

namespace vellum::ui {

namespace {

// One picture that QML waits for. Lives on the thread that asked.
class PosterResponse final : public QQuickImageResponse {
public:
  PosterResponse(PosterLoader& loader, const QUrl& url, int width) {
    m_ticket = loader.load(url, width, [link = m_link](QImage image) {
      const std::scoped_lock lock(link->mutex);
      if (link->response) link->response->take(std::move(image));
    });
  }
  ~PosterResponse() override {
    const std::scoped_lock lock(m_link->mutex);
    m_link->response = nullptr;
  }
  PosterResponse(const PosterResponse&) = delete;
  PosterResponse& operator=(const PosterResponse&) = delete;

  QQuickTextureFactory* textureFactory() const override {
    return QQuickTextureFactory::textureFactoryForImage(m_image);
  }
  void cancel() override { PosterLoader::cancel(m_ticket); }

private:
  struct Link {
    explicit Link(PosterResponse* r) : response(r) {}
    std::mutex mutex; // guards `response`
    PosterResponse* response;
  };

  void take(QImage image) {
    if (image.isNull()) {
      image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::transparent);
    }
    m_image = std::move(image);
    Q_EMIT finished();
  }

  const std::shared_ptr<Link> m_link = std::make_shared<Link>(this);
  PosterLoader::Ticket m_ticket;
  QImage m_image;
};

} // namespace

QQuickImageResponse* PosterProvider::requestImageResponse(const QString& id, const QSize& size) {
  const QString address = QString::fromUtf8(QByteArray::fromBase64(id.toLatin1()));
  const int width = size.width() > 0 ? size.width() : kWidth;
  return new PosterResponse(m_loader, QUrl(address), width);
}

} // namespace vellum::ui
