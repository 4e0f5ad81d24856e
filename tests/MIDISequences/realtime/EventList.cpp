#include "tests/MIDISequences/realtime/EventList.h"

#include "MIDISequences/RenderEventPool.h"

#include <algorithm>
#include <new>

namespace volvelle::test {

std::ostream& operator<<(std::ostream& stream, const ListEvent& event)
{
    stream << "at " << event.stamp << " type " << int{event.type} << " cable " << int{event.cable}
           << " bytes";
    for (const std::uint8_t byte : event.bytes) {
        stream << ' ' << int{byte};
    }
    return stream;
}

EventList::EventList(const ListEvents& events)
{
    AURenderEvent* last = nullptr;
    for (const ListEvent& event : events) {
        const std::size_t size =
            std::max(sizeof(AURenderEvent), offsetof(AUMIDIEvent, data) + event.bytes.size());
        blocks.push_back(std::make_unique<std::byte[]>(size));
        auto* const record = new (blocks.back().get()) AURenderEvent;
        record->MIDI = {.next = nullptr,
                        .eventSampleTime = event.stamp,
                        .eventType = event.type,
                        .length = static_cast<std::uint16_t>(event.bytes.size()),
                        .cable = event.cable};
        std::copy(event.bytes.begin(), event.bytes.end(),
                  reinterpret_cast<std::uint8_t*>(record) + offsetof(AUMIDIEvent, data));
        if (last != nullptr) {
            last->head.next = record;
        }
        last = record;
    }
}

const AURenderEvent* EventList::head() const
{
    return blocks.empty() ? nullptr : reinterpret_cast<const AURenderEvent*>(blocks.front().get());
}

ListEvents toldBy(const AURenderEvent* head)
{
    ListEvents events;
    for (; head != nullptr; head = head->head.next) {
        const std::uint8_t* first = renderEventBytes(head->MIDI);
        events.push_back({.stamp = head->MIDI.eventSampleTime,
                          .bytes = {first, first + head->MIDI.length},
                          .cable = head->MIDI.cable,
                          .type = head->MIDI.eventType});
    }
    return events;
}

ListEvents randomEvents(std::mt19937& random)
{
    constexpr std::uint8_t controllers[]{1, 64, 120, 121, 123};
    ListEvents events(static_cast<std::size_t>(draw(random, 0, 40)));
    for (ListEvent& event : events) {
        event.stamp = draw(random, -5, 20);
        event.cable = static_cast<std::uint8_t>(draw(random, 0, 2));
        event.type = static_cast<AURenderEventType>(draw(random, 0, 5) == 0 ? draw(random, 0, 10)
                                                                            : draw(random, 8, 9));
        const int kind = draw(random, 0, 9);
        event.bytes.resize(static_cast<std::size_t>(kind == 0 ? draw(random, 0, 300) : draw(random, 0, 4)));
        std::ranges::generate(event.bytes, [&] { return static_cast<std::uint8_t>(draw(random, 0, 127)); });
        if (!event.bytes.empty()) {
            const int status = kind == 0 ? draw(random, 0xF0, 0xFF)
                                         : draw(random, kind < 5 ? 0x80 : 0x70, kind < 5 ? 0x9F : 0xFF);
            event.bytes.front() = static_cast<std::uint8_t>(status);
        }
        if (event.bytes.size() > 1 && event.status() >> 4 == 0xB) {
            event.bytes[1] = controllers[draw(random, 0, 4)];
        }
        if (event.bytes.size() > 2 && draw(random, 0, 3) == 0) {
            event.bytes[2] = static_cast<std::uint8_t>(draw(random, 0, 1) * 200);
        }
    }
    return events;
}

} // namespace volvelle::test
