#include "phrases/MIDIPhraseMixer.h"

#include "base/Checked.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

#include <limits>

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Numbers = std::vector<int>;

class Mixer : public testing::Test {
protected:
    // The one event that a phrase event of this type becomes.
    AUMIDIEvent rendered(int type, double position, double duration = 0.0)
    {
        const auto event = eventOf(type, position, 60);
        event->channel = 1;
        event->value = 90;
        event->duration = duration;
        mixer.phraseTrack0->generatedEvents = {event};
        const auto events = mixer.phraseEventsToAUMIDIEvents();
        EXPECT_EQ(events.size(), 1U);
        return events.at(0);
    }

    Numbers mixed()
    {
        mixer.mixChannels();
        return numbersOf(mixer.mixedEvents);
    }

    ConsoleCapture console;
    MIDIPhraseMixer mixer;
};

using MixerDeathTest = Mixer;

Numbers bytesOf(const AUMIDIEvent& event)
{
    return {event.data[0], event.data[1], event.data[2]};
}

TEST_F(Mixer, ANewOneHasSevenEmptyTracksAndAllChannelsActiveButOne)
{
    EXPECT_EQ(mixer.chordTrack->channel, 0);
    EXPECT_TRUE(mixer.chordTrack->isMasterTrack);
    for (const std::shared_ptr<MIDIPhrase>& track :
         {std::shared_ptr<MIDIPhrase>(mixer.chordTrack), mixer.phraseTrack0, mixer.leadTrack0,
          mixer.bassTrack0, mixer.drumTrack0, mixer.polyMeter0, mixer.polyRhythm0}) {
        EXPECT_TRUE(track->loadedEvents.empty());
        EXPECT_TRUE(track->generatedEvents.empty());
        EXPECT_EQ(track->channel, 0);
    }
    for (std::size_t channel = 0; channel < 16; ++channel) {
        EXPECT_EQ(mixer.activeState.at(channel), channel != 10) << channel;
    }
    EXPECT_EQ(mixer.sequence, nullptr);
    EXPECT_TRUE(mixer.mixedEvents.empty());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(Mixer, ANewOneDrawsTheStepsOfSevenPhrases)
{
    const DrawScript script = DrawScript().newMixer();
    ScriptedRandomSource source(script.numbers);
    const MIDIPhraseMixer other;
    EXPECT_EQ(source.ranges, script.ranges);
}

TEST_F(Mixer, AnEmptyMixIsToldAndGivesSixteenEmptyTracks)
{
    const auto first = mixer.getSequence();
    EXPECT_EQ(console.take(), Lines{"Arranger::makeSequence() : There are no events for mixing."});
    EXPECT_EQ(first, mixer.sequence);
    EXPECT_EQ(first->getNumberOfTracks(), 16);
    for (int track = 0; track < 16; ++track) {
        EXPECT_TRUE(first->getTrackEvents(track).empty());
    }
    EXPECT_NE(mixer.getSequence(), first);
}

TEST_F(Mixer, EachChannelComesFromItsTracksList)
{
    mixer.chordTrack->generatedEvents = {noteAt(0.0, 10)};
    mixer.phraseTrack0->generatedEvents = {noteAt(0.0, 11)};
    mixer.leadTrack0->generatedEvents = {noteAt(0.0, 12)};
    mixer.bassTrack0->generatedEvents = {noteAt(0.0, 18)};
    mixer.drumTrack0->loadedEvents = {noteAt(0.0, 19)};
    mixer.polyRhythm0->loadedEvents = {noteAt(0.0, 20)};
    mixer.polyMeter0->generatedEvents = {noteAt(0.0, 24)};
    for (const auto& track : {mixer.phraseTrack0, mixer.leadTrack0, mixer.bassTrack0, mixer.polyMeter0}) {
        track->loadedEvents = {noteAt(0.0, 99)};
    }
    mixer.chordTrack->loadedEvents = {noteAt(0.0, 99)};
    mixer.drumTrack0->generatedEvents = {noteAt(0.0, 99)};
    mixer.polyRhythm0->generatedEvents = {noteAt(0.0, 99)};
    EXPECT_EQ(mixed(), (Numbers{10, 11, 12, 18, 19, 24}));
    EXPECT_EQ(mixer.mixedEvents[4], mixer.drumTrack0->loadedEvents[0]);
    mixer.activeState[10] = true;
    EXPECT_EQ(mixed(), (Numbers{10, 11, 12, 18, 19, 20, 24}));
    for (const auto& [channel, number] : std::vector<std::pair<std::size_t, int>>{
             {0, 10}, {1, 11}, {2, 12}, {8, 18}, {9, 19}, {10, 20}, {14, 24}}) {
        mixer.activeState.fill(false);
        mixer.activeState.at(channel) = true;
        EXPECT_EQ(mixed(), Numbers{number});
    }
}

TEST_F(Mixer, AnInactiveTrackStaysLoaded)
{
    mixer.leadTrack0->generatedEvents = {noteAt(0.0, 12)};
    mixer.activeState[2] = false;
    EXPECT_EQ(mixed(), Numbers{});
    EXPECT_EQ(mixer.leadTrack0->generatedEvents.size(), 1U);
}

TEST_F(Mixer, TheMixIsSortedAndTracksKeepTheirOrderAtOnePosition)
{
    mixer.chordTrack->generatedEvents = {noteAt(4.0, 1), noteAt(0.0, 2), noteAt(4.0, 3)};
    mixer.phraseTrack0->generatedEvents = {noteAt(4.0, 4), noteAt(1.0, 5)};
    EXPECT_EQ(mixed(), (Numbers{2, 5, 1, 3, 4}));
}

TEST_F(Mixer, ASequenceHoldsTheMixOnTheEventsChannels)
{
    const auto off = eventOf(PhraseEvent::noteOff, 1.0, 60);
    const auto none = eventOf(0, 1.0, 60);
    const auto drum = noteAt(2.0, 36, 0.5);
    drum->channel = 9;
    mixer.chordTrack->generatedEvents = {noteAt(0.0, 60), off, none};
    mixer.drumTrack0->loadedEvents = {drum};
    const auto sequence = mixer.getSequence();
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(notesOf(*sequence), (Lines{"0.0 0 60 100 0 1.0", "2.0 9 36 100 0 0.5"}));
    EXPECT_EQ(sequence->getTrackEvents(0).size(), 1U);
}

TEST_F(Mixer, SavingMixesAnewAndWritesTheMix)
{
    const TemporaryFolder folder;
    mixer.chordTrack->generatedEvents = {noteAt(0.0, 60)};
    mixer.save(folder.path / "mix.mid");
    EXPECT_EQ(mixer.mixedEvents.size(), 1U);
    ASSERT_NE(mixer.sequence, nullptr);
    const auto phrase = MIDIPhrase::make();
    phrase->loadPhrase(folder.path / "mix.mid", 0);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (Numbers{60, 60}));
}

TEST_F(Mixer, SavingAGivenSequenceMixesNothing)
{
    const TemporaryFolder folder;
    const auto sequence = std::make_shared<MIDISequence16>();
    sequence->createNoteEvent(0.0, 3, 72, 100, 0, 1.0F);
    mixer.chordTrack->generatedEvents = {noteAt(0.0, 60)};
    mixer.save(*sequence, folder.path / "given.mid");
    EXPECT_EQ(mixer.sequence, nullptr);
    EXPECT_TRUE(mixer.mixedEvents.empty());
    const auto phrase = MIDIPhrase::make();
    phrase->loadPhrase(folder.path / "given.mid", 0);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (Numbers{72, 72}));
}

TEST_F(Mixer, LoadingATrackDoesNothing)
{
    mixer.loadTrack(0, {});
    mixer.loadTrack(1, "none.mid");
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_TRUE(mixer.chordTrack->loadedEvents.empty());
}

TEST_F(Mixer, ANoteIsRenderedAtTwentyFourThousandSamplesToTheBeat)
{
    const auto event = rendered(PhraseEvent::noteOn, 2.0);
    EXPECT_EQ(event.next, nullptr);
    EXPECT_EQ(event.eventSampleTime, 48000);
    EXPECT_EQ(event.eventType, 8);
    EXPECT_EQ(event.reserved, 0);
    EXPECT_EQ(event.length, 3);
    EXPECT_EQ(event.cable, 0);
    EXPECT_EQ(bytesOf(event), (Numbers{0x91, 60, 90}));
    EXPECT_EQ(rendered(PhraseEvent::noteOn, 1.99999999).eventSampleTime, 47999);
}

TEST_F(Mixer, ANoteOffIsMovedOnByItsDurationAndHasNoVelocity)
{
    const auto event = rendered(PhraseEvent::noteOff, 3.0, 1.0);
    EXPECT_EQ(event.eventSampleTime, 96000);
    EXPECT_EQ(bytesOf(event), (Numbers{0x91, 60, 0}));
}

TEST_F(Mixer, OtherTypesHaveTheirStatusAndThreeBytes)
{
    EXPECT_EQ(bytesOf(rendered(PhraseEvent::controller, 1.0)), (Numbers{0xB1, 60, 90}));
    EXPECT_EQ(bytesOf(rendered(PhraseEvent::programChange, 1.0)), (Numbers{0xC1, 60, 90}));
    EXPECT_EQ(bytesOf(rendered(PhraseEvent::pitchWheel, 1.0)), (Numbers{0xE1, 60, 90}));
    EXPECT_EQ(bytesOf(rendered(PhraseEvent::afterTouch, 1.0)), (Numbers{0xD1, 60, 90}));
    EXPECT_EQ(rendered(PhraseEvent::programChange, 1.0, 5.0).eventSampleTime, 24000);
    EXPECT_EQ(rendered(PhraseEvent::afterTouch, 1.0).length, 3);
}

TEST_F(Mixer, EventsOfNoTypeAreNotRendered)
{
    mixer.chordTrack->generatedEvents = {eventOf(0, 0.0, 60), eventOf(7, 0.0, 60)};
    EXPECT_TRUE(mixer.phraseEventsToAUMIDIEvents().empty());
    EXPECT_EQ(mixer.mixedEvents.size(), 2U);
}

TEST_F(Mixer, RenderedEventsAreSortedByTheirSampleTimes)
{
    const auto off = eventOf(PhraseEvent::noteOff, 1.0, 60);
    off->duration = 2.0;
    mixer.chordTrack->generatedEvents = {off, noteAt(2.0, 61), noteAt(3.0, 62)};
    Numbers keys;
    for (const auto& event : mixer.phraseEventsToAUMIDIEvents()) {
        keys.push_back(event.data[1]);
    }
    EXPECT_EQ(keys, (Numbers{61, 60, 62}));
}

TEST_F(MixerDeathTest, APositionThatIsNoSampleTimeStops)
{
    for (const double position :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e300, 4e14}) {
        for (const int type : {1, 0}) {
            mixer.chordTrack->generatedEvents = {eventOf(type, position, 60)};
            EXPECT_DEATH(mixer.phraseEventsToAUMIDIEvents(), onlyLine(conversionMessage));
        }
    }
}

TEST_F(MixerDeathTest, AnEndThatIsNoSampleTimeStops)
{
    const auto off = eventOf(PhraseEvent::noteOff, 3e14, 60);
    off->duration = 3e14;
    mixer.chordTrack->generatedEvents = {off};
    EXPECT_DEATH(mixer.phraseEventsToAUMIDIEvents(), onlyLine(arithmeticMessage));
}

} // namespace
} // namespace volvelle
