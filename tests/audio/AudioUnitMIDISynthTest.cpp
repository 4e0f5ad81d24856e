#include "base/Paths.h"
#include "services/audiograph/graph/AudioComponentRegistry.h"
#include "tests/audio/SynthFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace volvelle::test {
namespace {

class AudioUnitMIDISynthTest : public SynthTest {};

TEST_F(AudioUnitMIDISynthTest, TheComponentIsTheSynthesizerOfTheHouse)
{
    EXPECT_EQ(AudioUnitMIDISynth::cd, synthesizerComponent);
    EXPECT_EQ(synth->componentDescription, AudioComponentDescription{});
    EXPECT_EQ(synth->midiSynth, nullptr);
    EXPECT_EQ(synth->currentSoundfont, std::nullopt);
    EXPECT_EQ(synth->className(), "AudioUnitMIDISynth");
}

TEST_F(AudioUnitMIDISynthTest, CreatingMakesTheInstrumentTheMainNodeAndAttachesIt)
{
    createSynth();
    ASSERT_NE(synth->midiSynth, nullptr);
    EXPECT_EQ(synth->getAVAudioUnit(), synth->midiSynth);
    EXPECT_EQ(synth->getMainNode(0), synth->midiSynth);
    EXPECT_EQ(synth->getOutputNode(0), synth->midiSynth);
    EXPECT_EQ(synth->midiSynth->engine, engine.get());
    EXPECT_EQ(synth->audioUnit, component.unit);
    EXPECT_EQ(component.unit->contextName, "Internal MIDI Synth (MT)");
    EXPECT_EQ(synth->componentDescription, AudioUnitMIDISynth::cd);
    EXPECT_EQ(listener->calls, Lines{"created"});
    EXPECT_EQ(created,
              (Lines{"AudioUnitBase::makeParameters(): Retriving parameters from the audio unit (Internal "
                     "MIDI Synth (MT)): ",
                     "AudioUnitBase::makeParameters(): Connected parameters to the observer (Internal MIDI "
                     "Synth (MT))."}));
    EXPECT_EQ(synth->parameters.size(), 2U);
    EXPECT_EQ(component.unit->calls, Lines{});
}

TEST_F(AudioUnitMIDISynthTest, ASynthesizerOfAnotherRateGetsNoConverters)
{
    component.plan.rate = 44100.0;
    createSynth();
    EXPECT_FALSE(synth->isWrapped());
    EXPECT_EQ(synth->getInputNode(0), synth->midiSynth);
}

TEST_F(AudioUnitMIDISynthTest, ASynthesizerPrintsAsItsOwnClass)
{
    synth->saveFullState("/none");
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitBase::saveFullState(): ERROR: The audio unit (AudioUnitMIDISynth) is nil."});
}

TEST_F(AudioUnitMIDISynthTest, WithoutAnEngineNothingIsCreated)
{
    synth->engine = nullptr;
    createSynth();
    EXPECT_EQ(created, Lines{"AudioUnitMIDISynth::create() : ERROR: Engine is nil."});
    EXPECT_EQ(synth->midiSynth, nullptr);
    EXPECT_EQ(listener->calls, Lines{});
    EXPECT_EQ(synth->componentDescription, AudioComponentDescription{});
}

TEST_F(AudioUnitMIDISynthTest, AnInstrumentThatCannotBeMadeIsToldAsANullUnit)
{
    registerAudioComponent(AudioUnitMIDISynth::cd, {});
    createSynth();
    EXPECT_EQ(created, Lines{});
    EXPECT_EQ(listener->calls, Lines{"not created"});
    EXPECT_EQ(synth->componentDescription, AudioUnitMIDISynth::cd);
    EXPECT_EQ(synth->getMainNode(0), nullptr);
    listener.reset();
    synth->create("Synth");
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitMIDISynthTest, DestroyingTakesTheInstrumentOutOfTheGraph)
{
    createSynth();
    const auto node = synth->midiSynth;
    ASSERT_EQ(engine->connect(node, engine->mainMixerNode(), 0, 0), noErr);
    synth->destroy();
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitBase::destroy(): INFO: desytroy for Internal MIDI Synth (MT) called."});
    EXPECT_EQ(synth->midiSynth, nullptr);
    EXPECT_EQ(synth->audioUnit, nullptr);
    EXPECT_EQ(node->engine, nullptr);
}

TEST_F(AudioUnitMIDISynthTest, TheNumberOfABankNamesItsResource)
{
    createSynth();
    for (const int number : {0, 1, 2, 3, 6, 7, 8, 9, 10, -1}) {
        synth->loadSoundFont(number);
    }
    EXPECT_EQ(asked, (Lines{"gs_instruments.dls", "soundfont2.sf2", "soundfont1.sf2", "gs_instruments.dls",
                            "soundfont6.sf2", "soundfont7.sf2", "gs_instruments.dls", "soundfont9.sf2",
                            "gs_instruments.dls", "gs_instruments.dls"}));
}

TEST_F(AudioUnitMIDISynthTest, ABankThatIsFoundIsGivenToTheUnit)
{
    createSynth();
    synth->loadSoundFont(0);
    EXPECT_EQ(takeCalls(), Lines{"property 1100 of 0 0: /banks/some.bank (8 bytes)"});
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitMIDISynth::loadSoundFont() : The soundfont at '/banks/some.bank' was "
                    "successfully loaded."});
    EXPECT_EQ(synth->currentSoundfont, std::nullopt);
}

TEST_F(AudioUnitMIDISynthTest, AMissingBankIsALineInTheLogAndNothingIsLoaded)
{
    createSynth();
    bank.reset();
    synth->loadSoundFont(0);
    EXPECT_EQ(asked, Lines{"gs_instruments.dls"});
    EXPECT_EQ(takeCalls(), Lines{});
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitMIDISynth::loadSoundFont() : ERROR: The soundfont could not be found."});
}

TEST_F(AudioUnitMIDISynthTest, TheAnswerOfTheUnitDecidesWhetherABankIsLoaded)
{
    createSynth();
    EXPECT_TRUE(synth->loadSoundFont(std::filesystem::path("/a.sf2")));
    EXPECT_EQ(
        console.take(),
        Lines{"AudioUnitMIDISynth::loadSoundFont() : The soundfont at '/a.sf2' was successfully loaded."});
    failWhere("1100", -43);
    EXPECT_FALSE(synth->loadSoundFont(std::filesystem::path("/b.sf2")));
    EXPECT_EQ(console.take(), Lines{"error -43"});
}

TEST_F(AudioUnitMIDISynthTest, VolumeAndRateAreThoseOfTheInstrument)
{
    createSynth();
    synth->setVolume(0.25F);
    synth->setRate(1.5F);
    EXPECT_EQ(synth->midiSynth->volume(), 0.25F);
    EXPECT_EQ(synth->midiSynth->rate(), 1.5F);
}

TEST_F(AudioUnitMIDISynthTest, WithoutAnInstrumentEveryUseStopsTheProgram)
{
    const std::string stop(nilMessage);
    EXPECT_DEATH(synth->loadSoundFont(0), stop);
    EXPECT_DEATH(synth->loadSoundFont(std::filesystem::path("/a.sf2")), stop);
    EXPECT_DEATH(synth->initialize(0, false), stop);
    EXPECT_DEATH(synth->preloadPatches(0, {}), stop);
    EXPECT_DEATH(synth->preloadPatches2({}), stop);
    EXPECT_DEATH(synth->preloadPatch(), stop);
    EXPECT_DEATH(synth->setVolume(1.0F), stop);
    EXPECT_DEATH(synth->setRate(1.0F), stop);
}

} // namespace
} // namespace volvelle::test
