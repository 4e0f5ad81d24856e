#include "audio/AudioUnitBase.h"
#include "base/Console.h"
#include "base/Extensions.h"
#include "base/Text.h"

#include <utility>

namespace volvelle {

namespace {

using Lines = std::vector<std::pair<std::string_view, std::string>>;

constexpr const char* none = "nil";

std::string textOf(const PropertyValue& value);

std::string textOf(const PropertyArray& values)
{
    std::vector<std::string> items;
    for (const PropertyValue& item : values) {
        items.push_back(textOf(item));
    }
    return text(items);
}

std::string textOf(const PropertyDictionary& values)
{
    std::vector<std::string> items;
    for (const auto& [key, value] : values) {
        items.push_back(concat(key, ": ", textOf(value)));
    }
    return text(items);
}

std::string textOf(const PropertyValue& value)
{
    return std::visit(
        [](const auto& held) {
            if constexpr (requires { textOf(held); }) {
                return textOf(held);
            } else {
                return text(held);
            }
        },
        value.value);
}

std::string parameterValues(const AUAudioUnit& unit)
{
    if (!unit.parameterTree) {
        return none;
    }
    std::vector<float> values;
    for (const auto& parameter : unit.parameterTree->allParameters) {
        values.push_back(parameter->value());
    }
    return text(values);
}

std::string busList(const std::vector<AUAudioUnitBus>& busses)
{
    return text(std::vector<std::string>(busses.size(), "AUAudioUnitBus"));
}

Lines identityLines(const AUAudioUnit& unit)
{
    return {{"unit all parameter values: ", parameterValues(unit)},
            {"unit name: ", unit.audioUnitName},
            {"unit short name: ", none},
            {"unit can process inplace: ", none},
            {"unit channel capabilities: ", none},
            {"unit channel map: ", none},
            {"unit component: ", none},
            {"unit component description: ", AudioUnitBase::formatComponentInfo(unit.componentDescription)},
            {"verbose: ", "AudioComponentDescription"},
            {"unit component name: ", none},
            {"unit component version: ", none},
            {"unit context name: ", text(unit.contextName)},
            {"unit current preset: ", none},
            {"unit .factory presets: ", none},
            {"unit fullstate: ", textOf(unit.fullState())},
            {"unit fullstate for document: ", none},
            {"unit input busses: ", busList(unit.inputBusses)},
            {"unit input bus count: ", text(unit.inputBusses.size())},
            {"unit input bus type: ", none}};
}

Lines renderingLines(const AUAudioUnit& unit)
{
    const bool isDevice = unit.componentDescription.componentType == fourCharacterCode("aumu");
    return {{"unit music device: ", text(isDevice)},
            {"unit rendering offline: ", none},
            {"unit latency: ", text(unit.latency())},
            {"unit manufacturer name: ", none},
            {"unit max. frames to render: ", text(AUAudioUnit::maximumFrames)},
            {"unit midi buffer size: ", none},
            {"unit midi output event block: ", none},
            {"unit midi output names:", text(unit.MIDIOutputNames)},
            {"unit musical context block: ", none},
            {"unit output busses: ", busList(unit.outputBusses)},
            {"unit output bus count: ", text(unit.outputBusses.size())},
            {"unit output bus type: ", none}};
}

Lines settingLines(const AUAudioUnit& unit)
{
    return {{"unit parameters for overview: ", none},
            {"unit parameter tree: ", unit.parameterTree ? "AUParameterTree" : none},
            {"unit provides user interface: ", none},
            {"unit render quality: ", none},
            {"unit resources allocated: ", none},
            {"unit should bypass effect: ", none},
            {"unit supported view configurations: ", none},
            {"unit suppoerts MPE: ", none},
            {"unit supports user presets: ", none},
            {"unit tail time: ", text(unit.tailTime())},
            {"unit transport state block: ", none},
            {"unit user presets: ", none},
            {"unit midi cable count: ", none}};
}

void print(std::string_view indentation, const Lines& lines)
{
    for (const auto& [label, value] : lines) {
        directPrint(indentation, label, value);
    }
}

} // namespace

void AudioUnitBase::nodeDiagnostics(const std::shared_ptr<AVAudioNode>& /*node*/) {}

void AudioUnitBase::unitDiagnostics(const AUAudioUnit& unit)
{
    print("\t\t", identityLines(unit));
    print("\t\t", renderingLines(unit));
    print("\t\t", settingLines(unit));
}

void AudioUnitBase::busDiagnostics(const AUAudioUnitBus& bus, int index)
{
    print("\t\t\tbus", {{" type: ", none},
                        {" representation latency: ", none},
                        {" format: ", "AVAudioFormat"},
                        {" format channel count: ", text(bus.format.channelCount)},
                        {" format common format: ", none},
                        {" format channel layout: ", none},
                        {" format interleaved: ", none},
                        {" format standard: ", none},
                        {" format samplerate: ", text(bus.format.sampleRate)},
                        {" format settings: ", none},
                        {" index: ", text(index)},
                        {" enabled: ", text(bus.isEnabled)},
                        {" max. channel count: ", none},
                        {" name: ", bus.name},
                        {" should allocate buffer: ", none}});
}

std::string AudioUnitBase::formatComponentInfo(const AudioComponentDescription& desc)
{
    return concat("Manufacturer: ", stringValue(desc.componentManufacturer),
                  ", Type: ", stringValue(desc.componentType),
                  ", Subtype: ", stringValue(desc.componentSubType));
}

} // namespace volvelle
