#pragma once

#include "base/Text.h"
#include "tests/sequence/SequenceFixture.h"

// Flat lists as texts, "sample [bytes]".
namespace volvelle::test {

inline Lines flatTexts(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events)
{
    Lines result;
    for (const auto& event : events) {
        result.push_back(concat(event->event().eventSampleTime, " ", event->array()));
    }
    return result;
}

inline Lines flatTexts(const std::vector<AUMIDIEvent>& records)
{
    Lines result;
    for (const AUMIDIEvent& record : records) {
        const std::vector<std::uint8_t> bytes(record.data, record.data + record.length);
        result.push_back(concat(record.eventSampleTime, " ", bytes));
    }
    return result;
}

class FlatteningTest : public SequenceTest {
protected:
    template <class Node>
    std::shared_ptr<Node> add(const std::shared_ptr<Node>& node, std::size_t track = 0)
    {
        sequence->sequenceNode->tracks.at(track)->addEvent(node);
        return node;
    }

    void addNote(double position, float duration, std::uint8_t number, std::uint8_t channel = 0)
    {
        add(std::make_shared<MidiNoteEvent>(position, duration, channel, number, std::uint8_t{100},
                                            std::uint8_t{10}));
    }

    auto owned() { return sequence->nodesToAUMIDIEvent(48000.0, 0); }

    auto plain() { return sequence->nodesToAUMIDIEvent(48000.0); }

    // What both forms say besides what the empty tempo track does; they must say the same.
    Lines said()
    {
        console.take();
        owned();
        Lines lines = console.take();
        EXPECT_FALSE(lines.empty());
        EXPECT_EQ(lines.at(0), "MIDISequence::Warnung: Die Spur enthält keine Daten.");
        lines.erase(lines.begin());
        plain();
        EXPECT_EQ(console.take(), lines);
        return lines;
    }
};

} // namespace volvelle::test
