#include "app/control/UIApplication.h"

namespace volvelle {

UIApplication& UIApplication::sharedApplication()
{
    static UIApplication application;
    return application;
}

void UIApplication::beginReceivingRemoteControlEvents() const
{
    if (remoteControl) {
        remoteControl->begin();
    }
}

void UIApplication::endReceivingRemoteControlEvents() const
{
    if (remoteControl) {
        remoteControl->end();
    }
}

} // namespace volvelle
