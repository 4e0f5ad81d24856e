#include "MIDISequences/realtime/AUMIDIEventListMixer.h"
#include "MIDISequences/realtime/AUMIDIEventListSorter.h"
#include "MIDISequences/realtime/AUMIDIEventListSplitter.h"
#include "MIDISequences/realtime/AUMIDISequencer.h"
#include "tests/MIDISequences/realtime/EventList.h"

#include <gtest/gtest.h>

#include <set>

namespace volvelle::test {

namespace {

using Records = std::multiset<const AURenderEvent*>;

// Whoever owns records gives them back at its end: those made next stand in their place.
class RecordOwners : public testing::Test {
protected:
    static Records recordsOf(const AURenderEvent* chain)
    {
        Records records;
        for (; chain != nullptr; chain = chain->head.next) {
            records.insert(chain);
        }
        return records;
    }

    static Records madeNext(std::size_t count)
    {
        constexpr std::uint8_t bytes[]{0x90, 60, 1};
        AUMIDIEvent record;
        record.length = sizeof(bytes);
        AURenderEvent* head = nullptr;
        for (std::size_t i = 0; i < count; ++i) {
            AURenderEvent* const made = makeRenderEvent(record, bytes);
            made->head.next = head;
            head = made;
        }
        Records records = recordsOf(head);
        releaseRenderEvents(head);
        return records;
    }

    // Of the other instances too.
    template <class Owner, class Make>
    static void expectGivenBack(Make make)
    {
        Records owned;
        {
            Owner owner;
            make(owner, owned);
        }
        EXPECT_FALSE(owned.empty());
        EXPECT_EQ(madeNext(owned.size()), owned);
    }

    const EventList list{ListEvents{{.stamp = 5, .bytes = {0x90, 60, 1}},
                                    {.stamp = 6, .bytes = {0x91, 61, 2}},
                                    {.stamp = 7, .bytes = {0x90, 62, 3}}}};
};

TEST_F(RecordOwners, ASorterGivesItsRecordsBack)
{
    expectGivenBack<AUMIDIEventListSorter>([this](AUMIDIEventListSorter& sorter, Records& owned) {
        owned = recordsOf(sorter.sortEvents(list.head()));
    });
}

TEST_F(RecordOwners, AMixerGivesItsRecordsBack)
{
    expectGivenBack<AUMIDIEventListMixer>([this](AUMIDIEventListMixer& mixer, Records& owned) {
        owned = recordsOf(mixer.mixEvents(list.head(), list.head()));
        EXPECT_EQ(owned.size(), 6U);
    });
}

TEST_F(RecordOwners, ASplitterGivesItsRecordsBackThoseOfASecondSplitToo)
{
    expectGivenBack<AUMIDIEventListSplitter>([this](AUMIDIEventListSplitter& splitter, Records& owned) {
        for (const int instance : {0, 0, 1}) {
            owned.merge(recordsOf(splitter.splitRealtimeEventListHead(list.head(), instance)));
        }
        EXPECT_EQ(owned.size(), 5U);
    });
}

TEST_F(RecordOwners, ASequencerGivesTheRecordsOfItsLastCycleBack)
{
    expectGivenBack<AUMIDISequencer>([](AUMIDISequencer& sequencer, Records& owned) {
        sequencer.allNotesOff();
        owned = recordsOf(sequencer.process(100, 512));
        EXPECT_EQ(owned.size(), 16U);
    });
}

} // namespace

} // namespace volvelle::test
