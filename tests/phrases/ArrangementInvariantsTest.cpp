#include "base/Checked.h"
#include "base/MainQueue.h"
#include "phrases/MIDIClipGenerator.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/phrases/RandomLibrary.h"
#include "tests/support/ScriptedRandomSource.h"

#include <algorithm>
#include <cmath>
#include <set>

// What holds for every arrangement, whatever the library.
namespace volvelle {
namespace {

using namespace test;

bool isTone(const ChordRule& rule, int key)
{
    return std::ranges::find(rule.rule, key % 12) != rule.rule.end();
}

void expectAscendingChords(const MIDIChordPhrase& track)
{
    for (std::size_t i = 0; i < track.chords.size(); ++i) {
        const ChordEvent& chord = *track.chords[i];
        ASSERT_NE(chord.nrule, nullptr);
        ASSERT_EQ(chord.position * 4.0, std::round(chord.position * 4.0));
        if (i > 0) {
            ASSERT_GT(chord.position, track.chords[i - 1]->position);
            ASSERT_NE(chord.nrule->index, track.chords[i - 1]->nrule->index);
        }
    }
    for (const auto& event : track.generatedEvents) {
        ASSERT_GT(event->duration, 0.0);
        ASSERT_LT(event->position + event->duration, 16.0);
    }
}

// The moved note is the loaded one on the first tone, going up and round, that is still free at its position.
void expectMoved(const PhraseEvent& moved, const PhraseEvent& loaded, const ChordRule& rule,
                 std::set<std::pair<double, int>>& taken)
{
    ASSERT_EQ(moved.type, PhraseEvent::noteOn);
    ASSERT_EQ(moved.position, loaded.position);
    ASSERT_EQ(moved.duration, loaded.duration);
    ASSERT_EQ(moved.channel, loaded.channel);
    ASSERT_EQ(moved.value, loaded.value);
    ASSERT_EQ(moved.value2, loaded.value2);
    ASSERT_TRUE(isTone(rule, moved.number));
    for (int key = loaded.number; key != moved.number; key = (key + 1) % 128) {
        ASSERT_TRUE(!isTone(rule, key) || taken.contains({moved.position, key}));
    }
    ASSERT_TRUE(taken.emplace(moved.position, moved.number).second);
}

// All notes from the first chord up to beat 16 are there, stretch by stretch, and no others.
void expectFollowed(const MIDIPhrase& track, const MIDIChordPhrase& master)
{
    std::set<std::pair<double, int>> taken;
    std::size_t place = 0;
    for (std::size_t i = 0; i < master.chords.size(); ++i) {
        const double from = master.chords[i]->position;
        const double to = i + 1 < master.chords.size() ? master.chords[i + 1]->position : 16.0;
        int id = 0;
        for (const auto& loaded : track.loadedEvents) {
            if (loaded->position < from || loaded->position >= to) {
                continue;
            }
            ASSERT_LT(place, track.generatedEvents.size());
            const PhraseEvent& moved = *track.generatedEvents[place++];
            ASSERT_EQ(moved.id, id++);
            ASSERT_NO_FATAL_FAILURE(expectMoved(moved, *loaded, *master.chords[i]->nrule, taken));
        }
    }
    ASSERT_EQ(place, track.generatedEvents.size());
}

void expectQuantized(const MIDIPhrase& track, int channel)
{
    for (std::size_t i = 0; i < track.loadedEvents.size(); ++i) {
        const PhraseEvent& event = *track.loadedEvents[i];
        ASSERT_EQ(event.id, static_cast<int>(i));
        ASSERT_EQ(event.type, PhraseEvent::noteOn);
        ASSERT_EQ(event.channel, channel);
        ASSERT_EQ(event.position * 4.0, std::round(event.position * 4.0));
        ASSERT_LE(event.position, 16.0);
    }
}

void expectPolyMetric(const MIDIPhrase& track)
{
    ASSERT_FALSE(track.loadedEvents.empty());
    for (std::size_t i = 0; i < track.loadedEvents.size(); ++i) {
        const PhraseEvent& event = *track.loadedEvents[i];
        ASSERT_GT(event.duration, 0.0);
        ASSERT_LT(event.position + event.duration, 16.0);
        ASSERT_EQ(event.channel, 14);
        ASSERT_GT(event.id, i > 0 ? track.loadedEvents[i - 1]->id : -1);
    }
}

void expectMixed(const MIDIPhraseMixer& mixer, MIDISequence16& sequence)
{
    ASSERT_TRUE(
        std::ranges::is_sorted(mixer.mixedEvents, {}, [](const auto& event) { return event->position; }));
    std::size_t count = mixer.chordTrack->generatedEvents.size() + mixer.drumTrack0->loadedEvents.size();
    for (const auto& track : {mixer.phraseTrack0, mixer.leadTrack0, mixer.bassTrack0, mixer.polyMeter0}) {
        count += track->generatedEvents.size();
    }
    ASSERT_EQ(mixer.mixedEvents.size(), count);
    ASSERT_EQ(sequence.getNumberOfTracks(), 16);
    std::size_t written = 0;
    for (int track = 0; track < 16; ++track) {
        for (const auto& event : sequence.getTrackEvents(track)) {
            ASSERT_EQ(std::get<MIDINoteMessage>(event.event).channel, track);
            ASSERT_NE(track, 10);
            ++written;
        }
    }
    ASSERT_EQ(written, count);
}

void expectArrangement(const MIDIPhraseMixer& mixer, MIDISequence16& sequence)
{
    ASSERT_NO_FATAL_FAILURE(expectAscendingChords(*mixer.chordTrack));
    for (const auto& [channel, track] : std::vector<std::pair<int, std::shared_ptr<MIDIPhrase>>>{
             {1, mixer.phraseTrack0}, {2, mixer.leadTrack0}, {8, mixer.bassTrack0}, {9, mixer.drumTrack0}}) {
        ASSERT_NO_FATAL_FAILURE(expectQuantized(*track, channel));
    }
    ASSERT_NO_FATAL_FAILURE(expectPolyMetric(*mixer.polyMeter0));
    for (const auto& track : {mixer.phraseTrack0, mixer.leadTrack0, mixer.bassTrack0, mixer.polyMeter0}) {
        ASSERT_NO_FATAL_FAILURE(expectFollowed(*track, *mixer.chordTrack));
    }
    ASSERT_NO_FATAL_FAILURE(expectMixed(mixer, sequence));
}

TEST(ArrangementInvariants, TenThousandArrangementsKeepTheRules)
{
    constexpr int libraries = 500;
    constexpr int arrangementsEach = 20;
    RandomLibrary writer(1);
    SeededRandomSource source(2);
    std::size_t chords = 0;
    std::size_t followers = 0;
    for (int i = 0; i < libraries; ++i) {
        PhraseLibrary library;
        writer.fill(library);
        for (int j = 0; j < arrangementsEach; ++j) {
            MIDIClipGenerator generator;
            const auto sequence = generator.makeArrangement();
            ASSERT_NO_FATAL_FAILURE(expectArrangement(*generator.phraseMixer, *sequence))
                << "library " << i << ", arrangement " << j;
            chords += generator.phraseMixer->chordTrack->chords.size();
            followers += generator.phraseMixer->leadTrack0->generatedEvents.size();
            mainQueue().drain();
        }
    }
    // The libraries are not so odd that nothing was put to the test.
    EXPECT_GT(chords, 15000U);
    EXPECT_GT(followers, 20000U);
}

TEST(ArrangementInvariantsDeathTest, MoreNotesAtOnePositionThanTheRuleHasKeysStop)
{
    PhraseLibrary library;
    library.add(chordPatterns, {{{0.0, 60, 1.0}}, {}, {}});
    PhraseFile crowd;
    for (int i = 0; i < 12; ++i) {
        crowd.notes.push_back({4.0, 40 + i, 1.0});
    }
    library.add(chordPhrases, crowd);
    for (const char* folder : {leads, basses, drums}) {
        library.add(folder, {});
    }
    SeededRandomSource source(1);
    MIDIClipGenerator generator;
    EXPECT_DEATH(generator.makeArrangement(), onlyLine(endlessMessage));
}

} // namespace
} // namespace volvelle
