// The stream as the player screen and the mini player show it.
#pragma once
#include "app/Navigation.h"
#include "app/Playback.h"
#include "ui/player/StreamTexts.h"
#include <QVariantList>
#include <qqmlintegration.h>

namespace vellum::ui {

// Main thread. Every value is read from the coordinator and the player.
class StreamModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Given to the screens")
  Q_PROPERTY(bool exists READ exists NOTIFY changed FINAL)
  Q_PROPERTY(bool isBeforePlaying READ isBeforePlaying NOTIFY changed FINAL)
  // "", "progress", "choices", "failure"
  Q_PROPERTY(QString middle READ middle NOTIFY changed FINAL)
  Q_PROPERTY(int stage READ stage NOTIFY changed FINAL) // of the row of dots, 0 to 4
  Q_PROPERTY(QString stageText READ stageText NOTIFY changed FINAL)
  Q_PROPERTY(QString numbers READ numbers NOTIFY changed FINAL)
  Q_PROPERTY(QString corner READ corner NOTIFY changed FINAL)
  Q_PROPERTY(QString notice READ notice NOTIFY changed FINAL)
  Q_PROPERTY(QString failure READ failure NOTIFY changed FINAL)
  Q_PROPERTY(bool canRetry READ canRetry NOTIFY changed FINAL)
  Q_PROPERTY(QVariantList choices READ choices NOTIFY choicesChanged FINAL) // of {id, name, size}
  Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
  Q_PROPERTY(QString miniText READ miniText NOTIFY miniTextChanged FINAL)

public:
  // Both outlive it.
  StreamModel(Playback& playback, Navigation& navigation);

  bool exists() const { return stream().has_value(); }
  bool isBeforePlaying() const;
  QString middle() const;
  int stage() const { return exists() ? int(stream()->stage) : 0; }
  QString stageText() const { return exists() ? ui::stageText(*stream()) : QString(); }
  QString numbers() const { return exists() ? numbersText(*stream()) : QString(); }
  QString corner() const;
  QString notice() const { return exists() ? stream()->notice.value_or(QString()) : QString(); }
  QString failure() const;
  bool canRetry() const { return exists() && ui::canRetry(*stream()); }
  QVariantList choices() const;
  QString title() const; // of what plays, a stream or not
  QString miniText() const;

  Q_INVOKABLE void retry() { m_playback.coordinator.retry(); }
  Q_INVOKABLE void pick(int id) { m_playback.coordinator.pickFile(id); }
  // Before anything played: nothing is saved.
  Q_INVOKABLE void cancel();
  Q_INVOKABLE void close();

Q_SIGNALS:
  void changed();
  void choicesChanged(); // apart from the numbers, so that a list of them stays as it is
  void miniTextChanged();

private:
  void compareChoices();
  const std::optional<StreamState>& stream() const { return m_playback.coordinator.stream(); }

  Playback& m_playback;
  Navigation& m_navigation;
  std::vector<StreamChoice> m_choices; // as told last
};

} // namespace vellum::ui
