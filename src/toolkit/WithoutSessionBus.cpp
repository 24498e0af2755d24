// Where there is no session bus to ask, motion is welcome and every start is the first.
#include "toolkit/ReducedMotion.h"
#include "toolkit/SingleInstance.h"

namespace ambrel {

void watchReducedMotion() {}

bool isMotionReduced()
{
    return false;
}

SingleInstance::SingleInstance(QString name) : m_name(std::move(name)) {}
SingleInstance::~SingleInstance() = default;
void SingleInstance::Activate(const QVariantMap &) {}

} // namespace ambrel
