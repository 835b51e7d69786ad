#include "desktop/StayAwake.h"
#include <QCoreApplication>

namespace vellum {

StayAwake::StayAwake(std::unique_ptr<platform::DisplaySleep> sleep) : m_sleep(std::move(sleep)) {}

void StayAwake::setPlaying(bool isPlaying) {
  if (isPlaying == m_isPlaying) return;
  m_isPlaying = isPlaying;
  if (isPlaying)
    m_sleep->hold(QCoreApplication::translate("StayAwake", "A video is playing"));
  else
    m_sleep->release();
}

} // namespace vellum
