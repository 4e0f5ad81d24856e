#include "audio/AudioUnitMIDISynth.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "services/audiograph/graph/AudioUnitCalls.h"

#include <numeric>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint32_t soundBankProperty = 1100;
constexpr std::uint32_t programCount = 128;

struct BankName {
    std::string_view name;
    std::string_view extension;
};

BankName bankName(int number)
{
    switch (number) {
    case 1:
        return {"soundfont2", "sf2"};
    case 2:
        return {"soundfont1", "sf2"};
    case 6:
        return {"soundfont6", "sf2"};
    case 7:
        return {"soundfont7", "sf2"};
    case 9:
        return {"soundfont9", "sf2"};
    default:
        return {"gs_instruments", "dls"};
    }
}

} // namespace

std::shared_ptr<AudioUnitMIDISynth> AudioUnitMIDISynth::make(std::shared_ptr<AVAudioEngine> engine,
                                                             SoundBankFinder finder,
                                                             AudioComponentFactory makeUnit)
{
    return std::shared_ptr<AudioUnitMIDISynth>(
        new AudioUnitMIDISynth(std::move(engine), std::move(finder), std::move(makeUnit)));
}

AudioUnitMIDISynth::AudioUnitMIDISynth(std::shared_ptr<AVAudioEngine> engine, SoundBankFinder finder,
                                       AudioComponentFactory factory)
    : AudioUnitBase(std::move(engine)),
      findSoundBank(std::move(finder)),
      makeUnit(factory ? std::move(factory) : AudioComponentFactory(makeAudioComponent))
{
}

void AudioUnitMIDISynth::create(const std::string& name)
{
    if (!engine) {
        debugprint("AudioUnitMIDISynth::create() : ERROR: Engine is nil.");
        return;
    }
    componentDescription = cd;
    midiSynth = AVAudioUnitMIDIInstrument::of(makeUnit(cd));
    if (!midiSynth) {
        tellCreated(nullptr);
        return;
    }
    setAVAudioUnit(midiSynth);
    setMainNode(midiSynth);
    audioUnit = midiSynth->auAudioUnit();
    audioUnit->contextName = name;
    componentDescription = audioUnit->componentDescription;
    attach(midiSynth);
}

void AudioUnitMIDISynth::destroy()
{
    AudioUnitBase::destroy();
    midiSynth = nullptr;
}

void AudioUnitMIDISynth::initialize(int sfn, bool preload)
{
    loadSoundFont(sfn);
    if (preload) {
        std::vector<std::uint32_t> programs(programCount);
        std::iota(programs.begin(), programs.end(), 0U);
        preloadPatches(0, programs, 0, 0);
        preloadPatches2(programs);
    }
}

void AudioUnitMIDISynth::loadSoundFont(int number)
{
    const BankName bank = bankName(number);
    if (const auto url = findSoundBank(bank.name, bank.extension)) {
        loadSoundFont(*url);
    } else {
        debugprint("AudioUnitMIDISynth::loadSoundFont() : ERROR: The soundfont could not be found.");
    }
}

bool AudioUnitMIDISynth::loadSoundFont(const std::filesystem::path& url)
{
    const std::filesystem::path* const location = &url;
    const OSStatus status =
        AudioUnitSetProperty(required(midiSynth).audioUnit(), soundBankProperty, kAudioUnitScope_Global, 0,
                             static_cast<const void*>(&location), sizeof(void*));
    if (status != noErr) {
        debugprint("error ", status);
        return false;
    }
    debugprint("AudioUnitMIDISynth::loadSoundFont() : The soundfont at '", url.string(),
               "' was successfully loaded.");
    return true;
}

void AudioUnitMIDISynth::setVolume(float value)
{
    required(midiSynth).setVolume(value);
}

void AudioUnitMIDISynth::setRate(float value)
{
    required(midiSynth).setRate(value);
}

} // namespace volvelle
