#include "desktop/SingleInstance.h"

namespace vellum {

// Links and files come as events of the application.
class SingleInstance::Door {};

SingleInstance::SingleInstance() : SingleInstance(Settings()) {}
SingleInstance::SingleInstance(Settings settings) : m_settings(std::move(settings)) {}
SingleInstance::~SingleInstance() = default;

SingleInstance::Start SingleInstance::start(const QStringList& /*links*/) { return Start::First; }

} // namespace vellum
