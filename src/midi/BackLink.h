#pragma once

#include <cstddef>
#include <memory>

namespace volvelle {

// What a BackLink can point to: a base of the class, whose end is the end of all links to the object.
class LinkTarget {
public:
    LinkTarget(const LinkTarget&) = delete;
    LinkTarget& operator=(const LinkTarget&) = delete;

protected:
    LinkTarget() = default;
    ~LinkTarget() = default;

private:
    template <class T>
    friend class BackLink;

    const std::shared_ptr<char> life = std::make_shared<char>();
};

// A link from a part to its whole. It reads as a plain pointer, never owns the object, and is null once that
// is gone. Used on the thread of the object.
template <class T>
class BackLink {
public:
    BackLink() = default;

    BackLink(std::nullptr_t) {}

    BackLink(T* object)
    {
        if (object != nullptr) {
            target = std::shared_ptr<T>(object->life, object);
        }
    }

    T* get() const { return target.lock().get(); }

    operator T*() const { return get(); }

    T* operator->() const { return get(); }

private:
    std::weak_ptr<T> target;
};

} // namespace volvelle
