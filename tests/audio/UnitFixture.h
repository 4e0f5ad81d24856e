#pragma once

#include "audio/AudioUnitBase.h"
#include "base/FatalStop.h"
#include "base/MainQueue.h"
#include "base/Text.h"
#include "tests/audio/FakeUnit.h"
#include "tests/support/ConsoleCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace volvelle::test {

// Notes every call as a line.
class UnitListener : public AudioUnitBaseDelegate {
public:
    Lines calls;
    std::shared_ptr<AudioUnitBase> created;

    void onAudioUnitCreated(const std::shared_ptr<AudioUnitBase>& unit) override
    {
        calls.emplace_back(unit ? "created" : "not created");
        created = unit;
    }

    void onAudioUnitDestroyed(const std::shared_ptr<AudioUnitBase>&) override
    {
        calls.emplace_back("destroyed");
    }

    void onAudioUnitMIDI(AudioUnitBase& unit, std::int64_t sampleTime, std::uint8_t cable, int length,
                         const std::uint8_t* data) override
    {
        calls.push_back(concat("MIDI of ", text(unit.audioUnit->contextName), ": ",
                               std::vector<std::uint8_t>(data, data + length), " at ", sampleTime, " on ",
                               cable));
    }

    void onAudioUnitParameter(const std::shared_ptr<AudioUnitBase>& unit, std::uint64_t address,
                              float value) override
    {
        calls.push_back(
            concat("parameter of ", text(unit->audioUnit->contextName), ": ", address, " is ", value));
    }
};

class UnitTest : public testing::Test {
protected:
    UnitTest()
    {
        wrapper->componentDescription = fakeComponent;
        wrapper->delegate = listener;
    }

    static Lines parametersRead(const std::string& name)
    {
        return {
            concat("AudioUnitBase::makeParameters(): Retriving parameters from the audio unit (", name,
                   "): "),
            concat("AudioUnitBase::makeParameters(): Connected parameters to the observer (", name, ").")};
    }

    FakeComponent component;
    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<UnitListener> listener = std::make_shared<UnitListener>();
    std::shared_ptr<AudioUnitBase> wrapper = AudioUnitBase::make(engine);
    ConsoleCapture console;
};

} // namespace volvelle::test
