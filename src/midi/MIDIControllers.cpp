#include "midi/MIDIControllers.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace volvelle {

namespace {

struct ControllerName {
    std::uint8_t number;
    std::string_view name;
};

constexpr std::array<ControllerName, 57> controllerNames = {{
    {0, "Bank Select MSB"},
    {1, "Modulation Wheel"},
    {2, "Breath Controller"},
    {4, "Foot Controller"},
    {5, "Portamento Time"},
    {6, "Data Entry"},
    {7, "Main Volume"},
    {8, "Balance"},
    {10, "Panorama"},
    {11, "Expression"},
    {12, "Effect Control 1"},
    {13, "Effect Control 2"},
    {16, "General Purpose 1"},
    {17, "General Purpose 2"},
    {18, "General Purpose 3"},
    {19, "General Purpose 4"},
    {32, "Bank Select LSB"},
    {64, "Hold 1"},
    {65, "Portamento"},
    {66, "Sostenuto"},
    {67, "Soft Pedal"},
    {68, "Legato Footswitch"},
    {69, "Hold 2"},
    {70, "Sound Controller 1"},
    {71, "Sound Controller 2"},
    {72, "Sound Controller 3"},
    {73, "Sound Controller 4"},
    {74, "Sound Controller 5"},
    {75, "Sound Controller 6"},
    {76, "Sound Controller 7"},
    {77, "Sound Controller 8"},
    {78, "Sound Controller 9"},
    {79, "Sound Controller 10"},
    {80, "General Purpose 5"},
    {81, "General Purpose 6"},
    {82, "General Purpose 7"},
    {83, "General Purpose 8"},
    {84, "Portamento Control"},
    {91, "Effect 1 Depth"},
    {92, "Effect 2 Depth"},
    {93, "Effect 3 Depth"},
    {94, "Effect 4 Depth"},
    {95, "Effect 5 Depth"},
    {96, "Data Increment"},
    {97, "Data Decrement"},
    {98, "NRPN LSB"},
    {99, "NRPN MSB"},
    {100, "RPN LSB"},
    {101, "RPN MSB"},
    {120, "All Sounds Off"},
    {121, "Controller Reset"},
    {122, "Local Control On/Off"},
    {123, "All Notes Off"},
    {124, "Omni Off"},
    {125, "Omni On"},
    {126, "Mono On/ Poly Off"},
    {127, "Poly On / Mono Off"},
}};

} // namespace

std::optional<MIDIControllers> MIDIControllers::fromRawValue(std::uint8_t rawValue)
{
    if (rawValue > PolyOn) {
        return std::nullopt;
    }
    return static_cast<Case>(rawValue);
}

std::string MIDIControllers::getName(std::uint8_t number)
{
    const auto* found = std::ranges::find(controllerNames, number, &ControllerName::number);
    return found == controllerNames.end() ? concat("Controller ", number) : std::string(found->name);
}

std::string MIDIControllers::getHex(MIDIControllers number)
{
    return "0x" + hexadecimal(number.rawValue());
}

} // namespace volvelle
