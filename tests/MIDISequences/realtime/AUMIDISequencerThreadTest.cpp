#include "tests/MIDISequences/realtime/SequencerProbe.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <utility>

namespace volvelle::test {

namespace {

StampedEvents song(int count, std::int64_t distance)
{
    StampedEvents list;
    for (int i = 0; i < count; ++i) {
        const auto key = static_cast<std::uint8_t>(40 + i % 40);
        const std::uint8_t status = i % 2 == 0 ? 0x90 : 0x80;
        list.push_back({i * distance, {status, key, 64}});
        if (i % 50 == 0) {
            list.push_back({i * distance, {0xFD, 1, 0, 4, 5}});
        }
    }
    return list;
}

// A text of so many bytes.
Bytes metaOf(std::size_t length)
{
    Bytes bytes(length, 'a');
    bytes[0] = 0xFD;
    bytes[1] = 5;
    return bytes;
}

std::shared_ptr<MIDISequence16> smallMusic()
{
    auto music = std::make_shared<MIDISequence16>();
    for (int i = 0; i < 8; ++i) {
        music->createNoteEvent(i * 0.05, 0, static_cast<std::uint8_t>(60 + i), 100, 0, 0.04F);
    }
    return music;
}

// How many operations; more where a sanitizer looks on.
std::uint64_t roundCount()
{
    const char* const asked = std::getenv("VOLVELLE_SEQUENCER_ROUNDS");
    return asked == nullptr ? 1000 : std::strtoull(asked, nullptr, 10);
}

// Counts what it is told on whatever thread.
class Counter : public AUMIDISequencerDelegate {
public:
    std::atomic<std::uint64_t> calls{0};

    void onAUSequencerComplete() override { ++calls; }

    void onAUSequencerLoop(int /*count*/) override { ++calls; }

    void onAUSequencerLoaded() override { ++calls; }
};

// Renders until it is told to end, and reads every record.
class Renderer {
public:
    explicit Renderer(SequencerProbe& newSequencer) : sequencer(newSequencer) {}

    std::atomic<bool> ends{false};
    std::atomic<std::uint64_t> cycles{0};
    std::atomic<std::uint64_t> records{0};

    void run()
    {
        std::int64_t time = 1;
        while (!ends) {
            const AURenderEvent* record = sequencer.process(time, 512);
            for (; record != nullptr; record = record->head.next) {
                records.fetch_add(1, std::memory_order_relaxed);
            }
            time += 512;
            ++cycles;
        }
    }

private:
    SequencerProbe& sequencer;
};

// As many running notes and sent events as there is room for end and go out in one cycle, with so many of the
// file's, and as many metas of that length were passed before as are kept.
void playAllBoundsInOneCycle(const Bytes& event, std::size_t eventCount)
{
    SequencerProbe sequencer;
    StampedEvents list(AUMIDISequencer::maximumRunningNotes, {0, {0x90, 60, 1}});
    list.insert(list.end(), eventCount, {600, event});
    list.push_back({90'000, {0xB0, 7, 1}});
    sequencer.load(list);
    const auto passed = eventsOf({{0, event}}).front();
    for (std::size_t i = 0; i < AUMIDISequencer::maximumSpecialEvents; ++i) {
        sequencer.specialEvents.pushOverOldest(passed->event(), passed->data());
    }
    sequencer.startClean(1);
    sequencer.process(1, 512);
    for (std::size_t i = 0; i < AUMIDISequencer::maximumRealtimeEvents; ++i) {
        sequencer.sendEvent(0, 0xB0, 7, 1);
    }
    std::size_t count = 0;
    {
        const RealtimeGuard guard;
        for (const AURenderEvent* record = sequencer.process(513, 512); record != nullptr;
             record = record->head.next) {
            ++count;
        }
    }
    std::_Exit(count == 2048 + 4096 + eventCount ? 0 : 1);
}

} // namespace

// In a program of its own: blocks that others took stay ready for all.
TEST(AUMIDISequencerThreadDeathTest, ACycleWithAllBoundsFilledTakesNoMemory)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(playAllBoundsInOneCycle({0xB0, 7, 1}, 512), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(playAllBoundsInOneCycle(metaOf(32), 512), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(playAllBoundsInOneCycle(metaOf(40), 512), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(playAllBoundsInOneCycle(metaOf(128), 512), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(playAllBoundsInOneCycle(metaOf(1043), 64), testing::ExitedWithCode(0), "");
}

TEST(AUMIDISequencerThread, ACycleTakesNoMemoryAndNoLockOnceItRuns)
{
    SequencerProbe sequencer;
    sequencer.isLooping = true;
    sequencer.load(song(2000, 20));
    const auto rounds = [&](std::int64_t from) {
        for (std::int64_t time = from; time < from + 200 * 512; time += 512) {
            sequencer.process(time, 512);
            if (time % (16 * 512) == from % (16 * 512)) {
                sequencer.sendEvent(1, 0x90, 60, 100);
                sequencer.seekToPosition(0.5);
            }
        }
    };
    sequencer.start(1);
    rounds(1);
    const StampedEvents next = song(100, 30);
    sequencer.load(next);
    for (std::int64_t time = 200'000; time < 200'000 + 400 * 512; time += 512) {
        const RealtimeGuard guard;
        sequencer.process(time, 512);
        sequencer.processInternal(time, 512);
        sequencer.cleanupCount = 0;
    }
    EXPECT_TRUE(sequencer.isPlaying());
}

TEST(AUMIDISequencerThread, ALoopWithMoreLongMetasThanAreKeptTakesNoMemory)
{
    for (const std::size_t length : {40U, 128U, 129U, 1043U}) {
        SequencerProbe sequencer;
        sequencer.isLooping = true;
        StampedEvents list;
        for (int i = 0; i < 600; ++i) {
            list.push_back({i * 100, metaOf(length)});
        }
        sequencer.load(list);
        sequencer.start(1);
        sequencer.process(1, 512);
        for (std::int64_t time = 513; time < 400 * 512; time += 512) {
            const RealtimeGuard guard;
            sequencer.process(time, 512);
        }
        EXPECT_EQ(sequencer.specialEvents.size(), length > 128 ? 64U : 512U);
        EXPECT_EQ(sequencer.specialEvents.take()->array(), metaOf(length));
    }
}

TEST(AUMIDISequencerThread, AFilePutOffIsPutInUseWithoutMemoryAndLocks)
{
    const TemporaryFolder folder;
    const auto file = folder.path / "song.mid";
    smallMusic()->saveToFile(file);
    SequencerProbe sequencer;
    sequencer.isLooping = true;
    sequencer.isMultiChannel = false;
    sequencer.load(StampedEvents{{0, {0x90, 60, 90}}, {2000, {0x90, 61, 90}}});
    for (int round = 0; round < 4; ++round) {
        sequencer.loadMIDIFile(file, false);
        sequencer.start(1);
        for (std::int64_t time = 1; time < 20 * 512; time += 512) {
            const RealtimeGuard guard;
            sequencer.process(time, 512);
        }
    }
    EXPECT_THAT(sequencer.listener->calls, testing::Contains("loaded"));
    EXPECT_GT(sequencer.getEventList().size(), 10U);
}

TEST(AUMIDISequencerThread, ADelegateThatStartsWhatWasPutInUseFreesNothingOfWhatWasBefore)
{
    const TemporaryFolder folder;
    const auto file = folder.path / "song.mid";
    smallMusic()->saveToFile(file);
    SequencerProbe sequencer;
    sequencer.isLooping = true;
    auto events = eventsOf({{0, {0x90, 60, 90}}, {2000, {0x90, 61, 90}}});
    const std::weak_ptr<AUMIDIEventEx> before = events.front();
    sequencer.load(std::move(events));
    sequencer.loadMIDIFile(file, false);
    int starts = 0;
    sequencer.listener->answer = [&](const std::string& call) {
        if (call == "loaded") {
            sequencer.start(1);
            ++starts;
        }
    };
    sequencer.start(1);
    for (std::int64_t time = 1; time < 20 * 512; time += 512) {
        const RealtimeGuard guard;
        sequencer.process(time, 512);
    }
    EXPECT_EQ(starts, 1);
    EXPECT_FALSE(before.expired());
    sequencer.stop();
    EXPECT_TRUE(before.expired());
}

TEST(AUMIDISequencerThread, AnEndAndADelegateThatStartsTakeNoMemoryAndNoLock)
{
    SequencerProbe sequencer;
    sequencer.load(song(20, 20));
    int starts = 0;
    std::int64_t now = 0;
    sequencer.listener->answer = [&](const std::string&) {
        ++starts;
        sequencer.start(now);
    };
    sequencer.startClean(1);
    for (now = 1; now < 600 * 512; now += 512) {
        if (now < 100 * 512) {
            sequencer.process(now, 512);
        } else {
            const RealtimeGuard guard;
            sequencer.process(now, 512);
        }
    }
    EXPECT_GT(starts, 500);
}

TEST(AUMIDISequencerThread, AnEndOfTheInternalFormTakesNoMemoryAndNoLockEither)
{
    SequencerProbe sequencer;
    sequencer.load(song(20, 20));
    sequencer.listener->answer = [&](const std::string&) { sequencer.start(1); };
    const ConsoleCapture console;
    sequencer.startClean(1);
    for (int i = 0; i < 100; ++i) {
        const RealtimeGuard guard;
        sequencer.processInternal(1, 512);
    }
    EXPECT_EQ(sequencer.listener->calls.size(), 101U);
}

TEST(AUMIDISequencerThread, ADelegateThatIsTakenAwayIsNotFreedByTheThreadThatTellsIt)
{
    SequencerProbe sequencer;
    std::atomic<bool> isTold{false};
    std::atomic<bool> mayReturn{false};
    sequencer.listener->answer = [&](const std::string& call) {
        isTold = call == "complete";
        while (isTold && !mayReturn) {
            std::this_thread::yield();
        }
    };
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}});
    sequencer.startClean(1);
    const std::weak_ptr<SequencerListener> old = std::exchange(sequencer.listener, nullptr);
    std::thread rendering([&] {
        const RealtimeGuard guard;
        sequencer.process(1, 512);
    });
    while (!isTold) {
        std::this_thread::yield();
    }
    sequencer.exclusively([&] { sequencer.delegate = std::make_shared<SequencerListener>(); });
    mayReturn = true;
    rendering.join();
    EXPECT_FALSE(old.expired());
    sequencer.exclusively([] {});
    EXPECT_FALSE(old.expired());
    sequencer.exclusively([&] { sequencer.delegate = nullptr; });
    EXPECT_TRUE(old.expired());
}

TEST(AUMIDISequencerThread, FiltersOfAllChannelsAndKindsAreSetWithoutMemory)
{
    SequencerProbe sequencer;
    const RealtimeGuard guard;
    sequencer.channelFilter.assign(16, 1);
    sequencer.statusFilter.assign(16, 0x90);
}

TEST(AUMIDISequencerThread, OneThreadRendersWhileOneOperatesAndOneSends)
{
    const TemporaryFolder folder;
    const auto file = folder.path / "song.mid";
    const auto music = smallMusic();
    music->saveToFile(file);
    SequencerProbe sequencer;
    const auto counter = std::make_shared<Counter>();
    sequencer.delegate = counter;
    sequencer.isLooping = true;
    sequencer.load(song(300, 40));
    sequencer.start(1);
    Renderer renderer(sequencer);
    std::thread rendering([&] { renderer.run(); });
    std::thread sending([&] {
        while (!renderer.ends) {
            sequencer.sendEvent(3, 0x90, 60, 100);
            sequencer.sendEvent({0xF0, 1, 2, 3, 4, 5, 0xF7});
            std::this_thread::yield();
        }
    });
    const std::uint64_t count = roundCount();
    for (std::uint64_t rounds = 0; rounds < count; ++rounds) {
        const std::uint64_t before = renderer.cycles;
        switch (rounds % 16) {
        case 0:
            sequencer.loadMIDIFile(file, (rounds / 16) % 3 == 0);
            break;
        case 1:
            sequencer.start(1);
            break;
        case 2:
            sequencer.seekToPosition(0.3);
            break;
        case 3:
            sequencer.mute(3);
            break;
        case 4:
            sequencer.unmuteAll();
            break;
        case 5:
            sequencer.setTempoFactor(1.0 + static_cast<double>(rounds % 7));
            break;
        case 6:
            sequencer.pause();
            break;
        case 7:
            sequencer._continue();
            break;
        case 8:
            sequencer.loadSequence(music->getMusicSequence());
            break;
        case 9:
            sequencer.seekToEvent(2);
            break;
        case 10:
            sequencer.setChannel(2);
            break;
        case 11:
            sequencer.load(song(300, 40));
            sequencer.start(1);
            break;
        case 12:
            sequencer.exclusively([&] { sequencer.statusFilter.assign(1, 0xB0); });
            break;
        case 13:
            sequencer.exclusively([&] { sequencer.statusFilter.clear(); });
            break;
        default:
            EXPECT_LE(sequencer.getCurrentEventIndex(), 400);
            EXPECT_LE(sequencer.getEventList().size(), 400U);
            EXPECT_NE(sequencer.sequence(), nullptr);
            sequencer.getCurrentEvent();
            sequencer.getCurrentTimeInSeconds();
            sequencer.getProgress();
            sequencer.getCurrentPositionInBeats();
            sequencer.specialEvents.take();
        }
        while (renderer.cycles < before + 2) {
            std::this_thread::yield();
        }
    }
    renderer.ends = true;
    rendering.join();
    sending.join();
    EXPECT_GT(renderer.records, 0U);
    EXPECT_GT(counter->calls, 0U);
}

} // namespace volvelle::test
