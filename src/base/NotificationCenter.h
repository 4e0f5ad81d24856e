#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

// Hands notifications on to those who asked for them, by name and by the object that posts. [main]
class NotificationCenter {
public:
    using Block = std::function<void(const void* object)>;

    // A registration, which ends with the last holder of its token.
    using Token = std::shared_ptr<void>;

    // Registers `block` for notifications of that name; with an object only for those it posts.
    [[nodiscard]] Token addObserver(std::string_view name, const void* object, Block block);

    // Calls the blocks for that name in the order of their registration, with the object that posts. A block
    // may add and remove registrations: one that is removed is not called any more, one that is added from
    // the next posting on.
    void post(std::string_view name, const void* object = nullptr);

private:
    struct Observer {
        std::string name;
        const void* object = nullptr;
        Block block;
    };

    std::vector<std::weak_ptr<Observer>> observers;
};

// The one notification centre of the process.
NotificationCenter& defaultNotificationCenter();

} // namespace volvelle
