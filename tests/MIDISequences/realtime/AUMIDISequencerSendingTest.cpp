#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

// Notes what is added, and adds it.
class AddingSequencer : public SequencerProbe {
public:
    std::vector<Bytes> added;

    using SequencerProbe::addRealtimeEvent;

    void addRealtimeEvent(const AUMIDIEvent& event, const std::uint8_t* bytes) override
    {
        added.emplace_back(bytes, bytes + event.length);
        SequencerProbe::addRealtimeEvent(event, bytes);
    }
};

TEST(AUMIDISequencerSending, WhateverIsSentIsAddedByTheOneOperation)
{
    AddingSequencer sequencer;
    sequencer.sendEvent(1, 0x90, 60, 100);
    sequencer.sendEvent({0xF0, 1, 2, 3, 4, 0xF7});
    sequencer.allNotesOff(2);
    AUMIDIEvent event = sequencer.generateRealtimeEvent(3, 0xC0, 5, 6);
    event.length = 2;
    sequencer.addRealtimeEvent(event);

    EXPECT_THAT(sequencer.added, ElementsAre(ElementsAre(0x91, 60, 100), ElementsAre(0xF0, 1, 2, 3, 4, 0xF7),
                                             ElementsAre(0xB2, 123, 0), ElementsAre(0xC3, 5)));
    EXPECT_EQ(sequencer.realtimeEvents.size(), 4U);
}

TEST(AUMIDISequencerSending, WhatASubclassDoesNotAddIsNotSent)
{
    class Silent : public SequencerProbe {
    public:
        using SequencerProbe::addRealtimeEvent;

        void addRealtimeEvent(const AUMIDIEvent& /*event*/, const std::uint8_t* /*bytes*/) override {}
    };

    Silent sequencer;
    sequencer.sendEvent(1, 0x90, 60, 100);
    sequencer.sendEvent({0xF0, 1, 2, 3, 4, 0xF7});
    sequencer.stop();

    EXPECT_TRUE(sequencer.realtimeEvents.empty());
    EXPECT_EQ(sequencer.process(1, 512), nullptr);
}

} // namespace

} // namespace volvelle::test
