#include "tests/audio/UnitFixture.h"

namespace volvelle::test {
namespace {

class AudioUnitBaseDiagnosticsTest : public UnitTest {
protected:
    static Lines indented(const std::string& indentation, Lines lines)
    {
        for (std::string& line : lines) {
            line.insert(0, indentation);
        }
        return lines;
    }
};

TEST_F(AudioUnitBaseDiagnosticsTest, AComponentPrintsByItsFourCharacterCodes)
{
    EXPECT_EQ(AudioUnitBase::formatComponentInfo(fakeComponent),
              "Manufacturer: test, Type: aufx, Subtype: fake");
}

TEST_F(AudioUnitBaseDiagnosticsTest, TheHookForNodesPrintsNothing)
{
    AudioUnitBase::nodeDiagnostics(engine->mainMixerNode());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseDiagnosticsTest, AUnitPrintsALineForEachPropertyInOrder)
{
    FakeUnit unit(fakeComponent, {.hasInput = true, .MIDIOutputNames = {"notes", "clock"}});
    unit.contextName = "Echo";
    unit.ownState =
        PropertyDictionary{{"list", {PropertyArray{{true}, {std::int64_t{3}}, {PropertyData{1, 2}}}}},
                           {"name", {std::string("x")}}};
    AudioUnitBase::unitDiagnostics(unit);
    EXPECT_EQ(console.take(), indented("\t\t", {"unit all parameter values: [1.0, 0.25]",
                                                "unit name: Fake",
                                                "unit short name: nil",
                                                "unit can process inplace: nil",
                                                "unit channel capabilities: nil",
                                                "unit channel map: nil",
                                                "unit component: nil",
                                                "unit component description: Manufacturer: test, Type: aufx, "
                                                "Subtype: fake",
                                                "verbose: AudioComponentDescription",
                                                "unit component name: nil",
                                                "unit component version: nil",
                                                "unit context name: Echo",
                                                "unit current preset: nil",
                                                "unit .factory presets: nil",
                                                "unit fullstate: [list: [true, 3, [1, 2]], name: x]",
                                                "unit fullstate for document: nil",
                                                "unit input busses: [AUAudioUnitBus]",
                                                "unit input bus count: 1",
                                                "unit input bus type: nil",
                                                "unit music device: false",
                                                "unit rendering offline: nil",
                                                "unit latency: 0.0",
                                                "unit manufacturer name: nil",
                                                "unit max. frames to render: 512",
                                                "unit midi buffer size: nil",
                                                "unit midi output event block: nil",
                                                "unit midi output names:[notes, clock]",
                                                "unit musical context block: nil",
                                                "unit output busses: [AUAudioUnitBus]",
                                                "unit output bus count: 1",
                                                "unit output bus type: nil",
                                                "unit parameters for overview: nil",
                                                "unit parameter tree: AUParameterTree",
                                                "unit provides user interface: nil",
                                                "unit render quality: nil",
                                                "unit resources allocated: nil",
                                                "unit should bypass effect: nil",
                                                "unit supported view configurations: nil",
                                                "unit suppoerts MPE: nil",
                                                "unit supports user presets: nil",
                                                "unit tail time: 0.0",
                                                "unit transport state block: nil",
                                                "unit user presets: nil",
                                                "unit midi cable count: nil"}));
}

TEST_F(AudioUnitBaseDiagnosticsTest, WhatAUnitDoesNotHavePrintsAsNil)
{
    const FakeUnit unit(fakeComponent, {.hasTree = false});
    AudioUnitBase::unitDiagnostics(unit);
    const Lines lines = console.take();
    EXPECT_THAT(lines, testing::IsSupersetOf({"\t\tunit all parameter values: nil",
                                              "\t\tunit context name: nil", "\t\tunit parameter tree: nil",
                                              "\t\tunit input busses: []", "\t\tunit midi output names:[]"}));
}

TEST_F(AudioUnitBaseDiagnosticsTest, ABusPrintsALineForEachPropertyInOrder)
{
    AudioUnitBase::busDiagnostics({{44100.0, 2}, "out", false}, 3);
    EXPECT_EQ(
        console.take(),
        indented("\t\t\tbus",
                 {" type: nil", " representation latency: nil", " format: AVAudioFormat",
                  " format channel count: 2", " format common format: nil", " format channel layout: nil",
                  " format interleaved: nil", " format standard: nil", " format samplerate: 44100.0",
                  " format settings: nil", " index: 3", " enabled: false", " max. channel count: nil",
                  " name: out", " should allocate buffer: nil"}));
}

} // namespace
} // namespace volvelle::test
