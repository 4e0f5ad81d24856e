#include "base/realtime/LineRing.h"

namespace volvelle {

bool LineRing::push(std::string_view beginning, std::string_view rest) noexcept
{
    Slot* const slot = claim(newest, 0);
    if (slot == nullptr) {
        missed.fetch_add(1, std::memory_order_relaxed);
        return false;
    }
    const std::size_t first = beginning.copy(slot->text.data(), longest);
    slot->length = first + rest.copy(slot->text.data() + first, longest - first);
    slot->turns.fetch_add(1, std::memory_order_release);
    return true;
}

bool LineRing::pop(std::string& line)
{
    Slot* const slot = claim(oldest, 1);
    if (slot == nullptr) {
        return false;
    }
    line.assign(slot->text.data(), slot->length);
    slot->turns.fetch_add(1, std::memory_order_release);
    return true;
}

LineRing::Slot* LineRing::claim(std::atomic<std::size_t>& next, std::size_t turns) noexcept
{
    std::size_t place = next.load(std::memory_order_relaxed);
    while (true) {
        Slot& slot = slots[place % capacity];
        const std::size_t due = place / capacity * 2 + turns;
        const std::size_t now = slot.turns.load(std::memory_order_acquire);
        if (now < due) {
            return nullptr;
        }
        if (now > due) {
            place = next.load(std::memory_order_relaxed);
        } else if (next.compare_exchange_weak(place, place + 1, std::memory_order_relaxed)) {
            return &slot;
        }
    }
}

} // namespace volvelle
