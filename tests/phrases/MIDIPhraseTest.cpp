#include "phrases/MIDIPhrase.h"

#include "base/Checked.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;

std::shared_ptr<MidiNoteEvent> found(double position, int number, float duration, int channel = 0)
{
    return std::make_shared<MidiNoteEvent>(position, duration, static_cast<std::uint8_t>(channel),
                                           static_cast<std::uint8_t>(number), std::uint8_t{80},
                                           std::uint8_t{30});
}

TEST(MIDIPhrase, ANewPhraseIsEmptyAndHasItsGenerators)
{
    const auto phrase = MIDIPhrase::make();
    EXPECT_EQ(MIDIPhrase::MAXBEATLENGTH, 16);
    EXPECT_EQ(phrase->sequence, nullptr);
    EXPECT_TRUE(phrase->loadedEvents.empty());
    EXPECT_TRUE(phrase->generatedEvents.empty());
    EXPECT_FALSE(phrase->polyMetricStepGenerator->steps.empty());
    EXPECT_EQ(phrase->polyRhythmicStepGenerator->instances.size(), 8U);
    EXPECT_FALSE(phrase->randomStepGenerator->steps.empty());
    EXPECT_FALSE(phrase->currentURL.has_value());
    EXPECT_EQ(phrase->currentLength, 0);
    EXPECT_EQ(phrase->currentID, 0);
    EXPECT_EQ(phrase->channel, 0);
    EXPECT_EQ(phrase->baseC, 60);
    EXPECT_TRUE(phrase->quantizesEvents);
    EXPECT_EQ(phrase->quantizePrecision, 4.0);
}

TEST(MIDIPhrase, ItsGeneratorsDrawInTheOrderOfTheFields)
{
    const DrawScript script = DrawScript().newPhrase();
    ScriptedRandomSource source(script.numbers);
    MIDIPhrase::make();
    EXPECT_EQ(source.ranges, script.ranges);
}

TEST(MIDIPhrase, AFoundNoteBecomesAnOnAndAnOffOfTheTracksChannel)
{
    const auto phrase = MIDIPhrase::make();
    phrase->channel = 8;
    phrase->foundNoteEvent(found(1.0, 60, 0.5F, 3));
    phrase->foundNoteEvent(found(2.0, 62, 0.25F, 3));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::id), (std::vector<int>{0, 0, 1, 1}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::type), (std::vector<int>{1, 2, 1, 2}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::channel), (std::vector<int>{8, 8, 8, 8}));
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{60, 60, 62, 62}));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{1.0, 1.5, 2.0, 2.25}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::duration),
              (std::vector<double>{0.5, 0.5, 0.25, 0.25}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::value), (std::vector<int>{80, 80, 80, 80}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::value2), (std::vector<int>{30, 30, 30, 30}));
    EXPECT_EQ(phrase->currentID, 2);
}

TEST(MIDIPhrase, ANoteBehindBeatSixteenIsIgnoredAndOneOnItIsNot)
{
    const auto phrase = MIDIPhrase::make();
    phrase->foundNoteEvent(found(16.0001, 60, 1.0F));
    EXPECT_TRUE(phrase->loadedEvents.empty());
    EXPECT_EQ(phrase->currentID, 0);
    phrase->foundNoteEvent(found(16.0, 60, 1.0F));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{16.0, 16.0}));
}

TEST(MIDIPhrase, ANoteOffStandsAtBeatSixteenAtTheLatest)
{
    const auto phrase = MIDIPhrase::make();
    phrase->foundNoteEvent(found(15.0, 60, 2.0F));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{15.0, 16.0}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::duration), (std::vector<double>{2.0, 2.0}));
}

TEST(MIDIPhrase, ANoteThatRepeatsTheKeyWhereItEndedIsDropped)
{
    ConsoleCapture console;
    const auto phrase = MIDIPhrase::make();
    phrase->foundNoteEvent(found(1.0, 60, 1.5F));
    phrase->foundNoteEvent(found(2.5, 60, 1.0F));
    EXPECT_EQ(phrase->loadedEvents.size(), 2U);
    EXPECT_EQ(phrase->currentID, 1);
    EXPECT_EQ(console.take(), Lines{"Warning: Duplicated note event (60) at position 2.5."});
}

TEST(MIDIPhrase, TheSameRepetitionOnAnotherChannelIsKept)
{
    ConsoleCapture console;
    const auto phrase = MIDIPhrase::make();
    phrase->channel = 5;
    phrase->foundNoteEvent(found(1.0, 60, 1.5F));
    phrase->foundNoteEvent(found(2.5, 60, 1.0F));
    EXPECT_EQ(phrase->loadedEvents.size(), 4U);
    EXPECT_EQ(console.take(), Lines{});
}

TEST(MIDIPhrase, EqualNotesThatStartTogetherAreBothKept)
{
    ConsoleCapture console;
    const auto phrase = MIDIPhrase::make();
    phrase->foundNoteEvent(found(1.0, 60, 1.0F));
    phrase->foundNoteEvent(found(1.0, 60, 1.0F));
    EXPECT_EQ(phrase->loadedEvents.size(), 4U);
    EXPECT_EQ(console.take(), Lines{});
}

TEST(MIDIPhrase, AFoundControllerKeepsItsOwnChannel)
{
    const auto phrase = MIDIPhrase::make();
    phrase->channel = 8;
    phrase->currentID = 7;
    phrase->foundControllerEvent(
        std::make_shared<MidiControllerEvent>(16.0, std::uint8_t{3}, std::uint8_t{64}, std::uint8_t{127}));
    phrase->foundControllerEvent(
        std::make_shared<MidiControllerEvent>(16.5, std::uint8_t{3}, std::uint8_t{64}, std::uint8_t{0}));
    ASSERT_EQ(phrase->loadedEvents.size(), 1U);
    const PhraseEvent& event = *phrase->loadedEvents[0];
    EXPECT_EQ(event.id, 7);
    EXPECT_EQ(event.type, PhraseEvent::controller);
    EXPECT_EQ(event.channel, 3);
    EXPECT_EQ(event.number, 64);
    EXPECT_EQ(event.position, 16.0);
    EXPECT_EQ(event.duration, 0.0);
    EXPECT_EQ(event.value, 127);
    EXPECT_EQ(event.value2, 0);
    EXPECT_EQ(phrase->currentID, 8);
}

TEST(MIDIPhrase, AMarkerIsToldAndNothingElse)
{
    ConsoleCapture console;
    const auto phrase = MIDIPhrase::make();
    phrase->foundMetaMarkerEvent(std::make_shared<MetaMarkerEvent>(4.0, "A"));
    EXPECT_EQ(console.take(), Lines{"marker: 4.0"});
    EXPECT_TRUE(phrase->loadedEvents.empty());
}

TEST(MIDIPhrase, QuantizingPutsNotesOnTheGridAndDropsTheRest)
{
    const auto phrase = MIDIPhrase::make();
    phrase->currentID = 40;
    const auto note = noteAt(1.13, 60, 0.5);
    note->id = 17;
    note->channel = 3;
    note->value = 90;
    note->value2 = 20;
    phrase->loadedEvents = {note, eventOf(2, 1.63, 60), eventOf(3, 2.0, 64), noteAt(2.0, 61, 0.1),
                            noteAt(3.9, 62)};
    phrase->quantizeEvents();
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::id), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{1.25, 2.0, 4.0}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::duration), (std::vector<double>{0.495, 0.0, 0.99}));
    const PhraseEvent& quantized = *phrase->loadedEvents[0];
    EXPECT_EQ(quantized.type, PhraseEvent::noteOn);
    EXPECT_EQ(quantized.channel, 3);
    EXPECT_EQ(quantized.value, 90);
    EXPECT_EQ(quantized.value2, 20);
    EXPECT_EQ(note->position, 1.13);
    EXPECT_EQ(phrase->currentID, 40);
}

TEST(MIDIPhrase, HalvesAreRoundedUpOnAnyGrid)
{
    const auto phrase = MIDIPhrase::make();
    phrase->loadedEvents = {noteAt(0.125, 60, 0.375), noteAt(0.375, 61, 0.125)};
    phrase->quantizeEvents(4.0);
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{0.25, 0.5}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::duration), (std::vector<double>{0.495, 0.2475}));
    phrase->loadedEvents = {noteAt(0.5, 60, 1.4)};
    phrase->quantizeEvents(1.0);
    EXPECT_EQ(positionsOf(phrase->loadedEvents), (std::vector<double>{1.0}));
    EXPECT_EQ(listOf(phrase->loadedEvents, &PhraseEvent::duration), (std::vector<double>{0.99}));
}

TEST(MIDIPhrase, GeneratedEventsAreCopiesOfTheNotesWithIdsOfTheirOwn)
{
    const auto phrase = MIDIPhrase::make();
    phrase->generatedEvents = {noteAt(9.0, 9)};
    const auto note = noteAt(1.1, 60, 0.7);
    note->id = 5;
    note->channel = 3;
    note->value = 90;
    note->value2 = 20;
    phrase->loadedEvents = {note, eventOf(2, 1.8, 60), eventOf(3, 2.0, 64), noteAt(3.0, 61)};
    phrase->currentID = 40;
    phrase->generateEvents();
    EXPECT_EQ(listOf(phrase->generatedEvents, &PhraseEvent::id), (std::vector<int>{0, 1}));
    const PhraseEvent& copy = *phrase->generatedEvents[0];
    EXPECT_EQ(copy.type, PhraseEvent::noteOn);
    EXPECT_EQ(copy.channel, 3);
    EXPECT_EQ(copy.number, 60);
    EXPECT_EQ(copy.position, 1.1);
    EXPECT_EQ(copy.duration, 0.7);
    EXPECT_EQ(copy.value, 90);
    EXPECT_EQ(copy.value2, 20);
    phrase->generatedEvents[0]->number = 99;
    EXPECT_EQ(note->number, 60);
    EXPECT_EQ(note->id, 5);
}

TEST(MIDIPhraseDeathTest, AnAbsentEventStops)
{
    const auto phrase = MIDIPhrase::make();
    EXPECT_DEATH(phrase->foundNoteEvent(nullptr), onlyLine(implicitNilMessage));
    EXPECT_DEATH(phrase->foundControllerEvent(nullptr), onlyLine(implicitNilMessage));
    EXPECT_DEATH(phrase->foundMetaMarkerEvent(nullptr), onlyLine(implicitNilMessage));
}

TEST(MIDIPhraseDeathTest, AChannelThatIsNoByteStops)
{
    const auto phrase = MIDIPhrase::make();
    for (const int channel : {-1, 256}) {
        phrase->channel = channel;
        EXPECT_DEATH(phrase->foundNoteEvent(found(0.0, 60, 1.0F)), onlyLine(conversionMessage));
    }
}

} // namespace
} // namespace volvelle
