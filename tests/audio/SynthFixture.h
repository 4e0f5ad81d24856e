#pragma once

#include "audio/AudioUnitMIDISynth.h"
#include "tests/audio/UnitFixture.h"

#include <filesystem>
#include <optional>
#include <string>

namespace volvelle::test {

// A synthesizer over a fake instrument, with a finder that notes what is asked for.
class SynthTest : public testing::Test {
protected:
    SynthTest() { synth->delegate = listener; }

    void createSynth()
    {
        synth->create("Internal MIDI Synth (MT)");
        created = console.take();
        listener->created.reset();
    }

    // Makes the calls that hold `part` fail.
    void failWhere(const std::string& part, OSStatus status)
    {
        component.unit->failure = [part, status](const std::string& call) {
            return call.find(part) != std::string::npos ? status : noErr;
        };
    }

    Lines takeCalls() { return std::exchange(component.unit->calls, {}); }

    static std::string preload(bool isOn)
    {
        return concat("property 4119 of 0 0: ", isOn ? 1 : 0, " (4 bytes)");
    }

    FakeComponent component{AudioUnitMIDISynth::cd, {.takesMIDI = true}};
    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<UnitListener> listener = std::make_shared<UnitListener>();
    Lines asked;                                                    // of the finder
    std::optional<std::filesystem::path> bank = "/banks/some.bank"; // its answer
    std::shared_ptr<AudioUnitMIDISynth> synth =
        AudioUnitMIDISynth::make(engine, [this](std::string_view name, std::string_view extension) {
            asked.push_back(concat(name, ".", extension));
            return bank;
        });
    Lines created; // what createSynth() printed
    ConsoleCapture console;
};

} // namespace volvelle::test
