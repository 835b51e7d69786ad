#include "platform/DisplaySleep.h"
#include <IOKit/pwr_mgt/IOPMLib.h>
#include <optional>

namespace vellum::platform {

namespace {

class PowerAssertion final : public DisplaySleep {
public:
  ~PowerAssertion() override { release(); }

  void hold(const QString& reason) override {
    if (m_assertion) return;
    const CFStringRef text = reason.toCFString();
    IOPMAssertionID assertion = kIOPMNullAssertionID;
    if (IOPMAssertionCreateWithName(kIOPMAssertionTypePreventUserIdleDisplaySleep,
                                    kIOPMAssertionLevelOn, text, &assertion) == kIOReturnSuccess)
      m_assertion = assertion;
    CFRelease(text);
  }
  void release() override {
    if (m_assertion) IOPMAssertionRelease(*m_assertion);
    m_assertion.reset();
  }

private:
  std::optional<IOPMAssertionID> m_assertion;
};

} // namespace

std::unique_ptr<DisplaySleep> DisplaySleep::make() { return std::make_unique<PowerAssertion>(); }

} // namespace vellum::platform
