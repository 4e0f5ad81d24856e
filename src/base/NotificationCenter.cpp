#include "base/NotificationCenter.h"

#include "base/MainThread.h"

#include <utility>

namespace volvelle {

NotificationCenter::Token NotificationCenter::addObserver(std::string_view name, const void* object,
                                                          Block block)
{
    assertMainThread();
    std::erase_if(observers, [](const auto& observer) { return observer.expired(); });
    auto added = std::make_shared<Observer>(Observer{std::string(name), object, std::move(block)});
    observers.push_back(added);
    return added;
}

void NotificationCenter::post(std::string_view name, const void* object)
{
    assertMainThread();
    const auto present = observers;
    for (const auto& entry : present) {
        const auto observer = entry.lock();
        const bool isMeant = observer && observer->block && observer->name == name &&
                             (observer->object == nullptr || observer->object == object);
        if (isMeant) {
            observer->block(object);
        }
    }
}

NotificationCenter& defaultNotificationCenter()
{
    static NotificationCenter center;
    return center;
}

} // namespace volvelle
