#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include "base/Text.h"

namespace volvelle::test {

void PrintTo(const Stamped& event, std::ostream* to)
{
    *to << event.frame << ":";
    for (const std::uint8_t byte : event.bytes) {
        *to << ' ' << hexadecimal(byte);
    }
}

StampedEvents stampedOf(const AURenderEvent* chain)
{
    StampedEvents result;
    for (; chain != nullptr; chain = chain->head.next) {
        const AUMIDIEvent& record = chain->MIDI;
        const std::uint8_t* const bytes = renderEventBytes(record);
        result.push_back({record.eventSampleTime, {bytes, bytes + record.length}});
    }
    return result;
}

StampedEvents stampedOf(const std::vector<AUMIDIEvent>& records)
{
    StampedEvents result;
    for (const AUMIDIEvent& record : records) {
        EXPECT_LE(record.length, 3);
        EXPECT_EQ(record.next, nullptr);
        result.push_back({record.eventSampleTime, {record.data, record.data + record.length}});
    }
    return result;
}

std::vector<std::shared_ptr<AUMIDIEventEx>> eventsOf(const StampedEvents& list)
{
    std::vector<std::shared_ptr<AUMIDIEventEx>> events;
    for (const Stamped& event : list) {
        const bool isExclusive = !event.bytes.empty() && event.bytes[0] == 0xF0;
        const AURenderEventType type = isExclusive ? AURenderEventMIDISysEx : AURenderEventMIDI;
        const auto length = static_cast<std::uint32_t>(event.bytes.size());
        const auto& made = events.emplace_back(
            std::make_shared<AUMIDIEventEx>(type, event.bytes.data(), length, event.frame));
        made->beats = static_cast<double>(event.frame) / 24000.0;
    }
    return events;
}

void SequencerListener::note(const char* what)
{
    calls.emplace_back(what);
    if (answer) {
        answer(calls.back());
    }
}

SequencerProbe::SequencerProbe()
{
    delegate = listener;
}

void SequencerProbe::load(const StampedEvents& newList)
{
    load(eventsOf(newList));
}

void SequencerProbe::load(std::vector<std::shared_ptr<AUMIDIEventEx>> events)
{
    useList(std::make_unique<AUMIDISequencerList>(SequencerFile{{}, std::move(events)}, sequence()));
}

void SequencerProbe::startClean(std::int64_t time)
{
    start(time);
    realtimeEvents.clear();
    seeking = false;
}

StampedEvents operator+(StampedEvents a, const StampedEvents& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace volvelle::test
