// The window behind its sidebar, sheets, alerts and menu.
#pragma once
#include "app/WindowState.h"
#include <QVariantList>
#include <qqmlintegration.h>

namespace vellum::ui {

// Main thread. Holds nothing: every value is read from what the window shows.
class WindowModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Given to the window")
  Q_PROPERTY(QVariantList sections READ sections CONSTANT) // {id, title, icon}
  Q_PROPERTY(QString section READ section WRITE setSection NOTIFY sectionChanged)
  Q_PROPERTY(bool showsPlayer READ showsPlayer NOTIFY playerChanged)
  Q_PROPERTY(bool showsMiniPlayer READ showsMiniPlayer NOTIFY playerChanged)
  Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged) // "" for none
  Q_PROPERTY(bool asksAboutSeeders READ asksAboutSeeders NOTIFY asksAboutSeedersChanged)
  Q_PROPERTY(bool isMuted READ isMuted NOTIFY isMutedChanged)
  Q_PROPERTY(QString title READ title NOTIFY playerChanged) // of the window

public:
  // It outlives the model.
  explicit WindowModel(WindowState& window);

  static QVariantList sections();
  QString section() const { return rawValue(m_window.navigation.section()); }
  void setSection(const QString& section); // an unknown one changes nothing
  bool showsPlayer() const;
  bool showsMiniPlayer() const;
  QString notice() const { return m_window.navigation.notice().value_or(QString()); }
  bool asksAboutSeeders() const { return coordinator().zeroSeedPrompt().has_value(); }
  bool isMuted() const { return m_window.playback.player.isMuted(); }
  QString title() const;

  Q_INVOKABLE void dismissNotice() { m_window.navigation.setNotice(std::nullopt); }
  Q_INVOKABLE void answerAboutSeeders(bool tryAnyway);
  Q_INVOKABLE void expandPlayer() { m_window.navigation.setShowPlayer(true); }

  // The menu's entries; each acts at once, whether or not anything plays.
  Q_INVOKABLE void toggle() { m_window.playback.player.toggle(); }
  Q_INVOKABLE void skip(double seconds) { m_window.skip(seconds); }
  Q_INVOKABLE void changeVolume(float by) { m_window.playback.player.adjustVolume(by); }
  Q_INVOKABLE void toggleMuted() { m_window.playback.player.setMuted(!isMuted()); }
  Q_INVOKABLE void stop() { m_window.stop(); }

  // A .torrent file that the user has picked or dropped; it comes into the inspector.
  Q_INVOKABLE void inspectFile(const QUrl& file) { m_window.links.inspectFile(file.toLocalFile()); }
  Q_INVOKABLE void open(const QString& link) { m_window.links.open(link); }
  // With the escapes of a link as they came.
  Q_INVOKABLE void openUrl(const QUrl& url) { open(url.toString(QUrl::FullyEncoded)); }

Q_SIGNALS:
  void sectionChanged();
  void playerChanged();
  void noticeChanged();
  void asksAboutSeedersChanged();
  void isMutedChanged();

private:
  const PlaybackCoordinator& coordinator() const { return m_window.playback.coordinator; }

  WindowState& m_window;
};

} // namespace vellum::ui
