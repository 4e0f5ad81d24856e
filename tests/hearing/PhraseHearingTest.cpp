#include "hearing/PhraseHearing.h"

#include "phrases/MIDIPhrases.h"

#include <gtest/gtest.h>

#include <array>

namespace volvelle {
namespace {

constexpr unsigned majorOfC = 1U << 0 | 1U << 4 | 1U << 7;
constexpr unsigned majorOfF = 1U << 5 | 1U << 9 | 1U << 0;

// C for two bars, F for two.
const Harmony twoChords({{0, majorOfC, 0}, {32, majorOfF, 5}});

std::vector<int> keysOf(const HeardNotes& notes)
{
    std::vector<int> keys;
    for (const HeardNote& note : notes) {
        keys.push_back(note.key);
    }
    return keys;
}

TEST(PhraseHearing, NotesGoUpToTheNextFreeTone)
{
    const HeardNotes notes{{0, 1, 60}, {0, 1, 60}, {0, 1, 61}, {4, 1, 68}, {32, 1, 61}, {40, 1, 125}};
    EXPECT_EQ(keysOf(followed(notes, twoChords)), (std::vector<int>{60, 64, 67, 72, 65, 125}));
    EXPECT_EQ(keysOf(followed({{40, 1, 126}}, Harmony({{0, 1, 0}}))), std::vector<int>{0});
    EXPECT_EQ(followed({{40, 3, 60, 99}}, twoChords), (HeardNotes{{40, 3, 60, 99}}));
}

TEST(PhraseHearing, NotesBeforeTheFirstChordAndAtTheEndAreLeftOut)
{
    const Harmony late({{16, majorOfC, 0}});
    EXPECT_EQ(keysOf(followed({{15, 4, 60}, {16, 1, 60}, {64, 1, 60}}, late)), std::vector<int>{60});
    EXPECT_EQ(followed({{0, 1, 60}}, Harmony({{0, 0, 0}})), HeardNotes{});
}

// The same notes and chords through the generator's own phrase.
TEST(PhraseHearing, NotesFollowAsInAnArrangement)
{
    const auto chords = MIDIChordPhrase::make();
    const auto phrase = MIDIPhrase::make();
    HeardNotes notes;
    std::vector<HeardChord> heard;
    for (int i = 0; i < 8; ++i) {
        const auto chord = std::make_shared<ChordEvent>();
        chord->position = 0.5 + i * 1.75;
        chord->nrule = std::make_shared<ChordRule>();
        chord->nrule->rule = {i * 7 % 12, (i * 7 + 3) % 12, (i * 7 + 7) % 12};
        unsigned tones = 0;
        for (const int tone : chord->nrule->rule) {
            tones |= 1U << tone;
        }
        chords->chords.push_back(chord);
        heard.push_back({static_cast<int>(chord->position * 4), tones, chord->nrule->rule.front()});
    }
    for (int i = 0; i < 120; ++i) {
        const auto event = std::make_shared<PhraseEvent>();
        event->type = PhraseEvent::noteOn;
        event->position = i / 2 * 0.25;
        event->number = static_cast<std::uint8_t>(i * 29 % 128);
        phrase->loadedEvents.push_back(event);
        notes.push_back({i / 2, 1, event->number, 100});
    }
    phrase->transposeTrackNotes(*chords);
    std::vector<int> keys;
    for (const auto& event : phrase->generatedEvents) {
        keys.push_back(event->number);
    }
    EXPECT_EQ(keysOf(followed(notes, Harmony(heard))), keys);
}

TEST(PhraseHearing, AToneHeldOverAChangeSoundsOutsideUnlessItFits)
{
    EXPECT_EQ(outsideChords({{28, 6, 64}}, twoChords), Onsets{3} << 32);
    EXPECT_EQ(outsideChords({{28, 6, 60}}, twoChords), 0U);
    EXPECT_EQ(outsideChords({{60, 9, 64}}, twoChords), Onsets{15} << 60);
    EXPECT_EQ(outsideChords({{0, 4, 61}}, Harmony({{2, majorOfC, 0}})), Onsets{3} << 2);
}

TEST(PhraseHearing, AChangeIsMetWithinASixteenth)
{
    const Harmony three({{0, 1, 0}, {16, 2, 1}, {32, 4, 2}});
    EXPECT_EQ(changesMet({{15, 1, 40}, {33, 1, 40}}, three), (Share{2, 2}));
    EXPECT_EQ(changesMet({{0, 1, 40}, {14, 8, 40}, {34, 1, 40}}, three), (Share{0, 2}));
    EXPECT_EQ(changesMet({{0, 1, 40}}, Harmony({{0, 1, 0}})), (Share{0, 0}));
}

TEST(PhraseHearing, ARootIsSoundedStruckOrHeld)
{
    EXPECT_EQ(rootsSounded({{8, 4, 36}, {40, 4, 41}}, twoChords), (Share{2, 2}));
    EXPECT_EQ(rootsSounded({{8, 24, 41}, {40, 4, 36}}, twoChords), (Share{0, 2}));
    EXPECT_EQ(rootsSounded({{8, 25, 41}}, twoChords), (Share{1, 2}));
}

TEST(PhraseHearing, KicksUnderNotesAndRepeatsAreCounted)
{
    EXPECT_EQ(onKicks({{0, 1, 40}, {1, 1, 40}, {63, 1, 40}}, Onsets{1} | Onsets{1} << 63), (Share{2, 3}));
    EXPECT_EQ(keyRepeats({{0, 1, 60}, {2, 1, 60}, {4, 1, 64}, {4, 1, 67}, {6, 1, 67}}), (Share{2, 3}));
}

TEST(PhraseHearing, OnsetsAreToldByVoice)
{
    const HeardNotes drums{{0, 1, 36}, {1, 1, 35}, {4, 1, 38}, {5, 1, 37}, {6, 1, 39}, {7, 1, 42}};
    EXPECT_EQ(onsetsOf(drums), 0xF3U);
    EXPECT_EQ(kicksOf(drums), 0x3U);
    EXPECT_EQ(snaresOf(drums), 0x70U);
}

TEST(PhraseHearing, DistanceIsTheShareOfPlacesThatOnlyOneHas)
{
    using Rows = std::array<Onsets, 2>;
    EXPECT_EQ(distanceOf(Rows{0xF, 0}, Rows{0xF, 0}), 0.0);
    EXPECT_EQ(distanceOf(Rows{0xF, 0}, Rows{0x3, 0}), 0.5);
    EXPECT_EQ(distanceOf(Rows{0x1, 0x2}, Rows{0x2, 0x1}), 1.0);
    EXPECT_EQ(distanceOf(Rows{}, Rows{}), 0.0);
}

TEST(PhraseHearing, BarsInAnotherOrderAreOnePhrase)
{
    using Rows = std::array<Onsets, 2>;
    const Rows phrase{0x0001'0003'0007'000F, 0x8000'0000'0001'0010};
    const Rows turned{0x000F'0007'0001'0003, 0x0010'0001'8000'0000};
    EXPECT_GT(distanceOf(phrase, turned), 0.5);
    EXPECT_EQ(distanceInAnyOrder(phrase, turned), 0.0);
    EXPECT_EQ(distanceInAnyOrder(turned, phrase), 0.0);
    // Rows move together.
    EXPECT_GT(distanceInAnyOrder(phrase, Rows{turned[0], phrase[1]}), 0.0);
    EXPECT_EQ(distanceInAnyOrder(Rows{0xF, 0}, Rows{0x3, 0}), 0.5);
    EXPECT_EQ(distanceInAnyOrder(Rows{0x1, 0}, Rows{0x2, 0}), 1.0);
}

TEST(PhraseHearing, AShareIsToldInTenthsOfAPercent)
{
    EXPECT_EQ(percentText(0.08), "8 %");
    EXPECT_EQ(percentText(0.08349), "8.3 %");
    EXPECT_EQ(percentText(Share{2, 3}.value()), "66.7 %");
    EXPECT_EQ(percentText(Share{}.value()), "0 %");
}

} // namespace
} // namespace volvelle
