#include "cli/InspectJSON.h"

#include "base/PlainText.h"
#include "base/Text.h"

#include <nlohmann/json.hpp>

namespace volvelle {

namespace {

using JSON = nlohmann::ordered_json;

JSON noteObject(const FoundNote& note)
{
    return {{"position", note.position},
            {"duration", note.duration},
            {"number", note.number},
            {"velocity", note.velocity},
            {"releaseVelocity", note.releaseVelocity},
            {"channel", note.channel}};
}

JSON eventObject(const FoundEvent& event)
{
    JSON object{{"position", event.position}, {"type", event.type}};
    if (event.channel) {
        object["channel"] = *event.channel;
    }
    object["data"] = event.data;
    if (event.text) {
        object["text"] = *event.text;
    }
    return object;
}

JSON trackObject(const FoundTrack& track)
{
    JSON object{{"index", track.index}};
    object["channel"] = track.channel ? JSON(*track.channel) : JSON(nullptr);
    object["name"] = track.name;
    object["lengthBeats"] = track.length;
    object["notes"] = JSON::array();
    for (const FoundNote& note : track.notes) {
        object["notes"].push_back(noteObject(note));
    }
    object["events"] = JSON::array();
    for (const FoundEvent& event : track.events) {
        object["events"].push_back(eventObject(event));
    }
    return object;
}

JSON chordObject(const FoundChord& chord)
{
    return {{"position", chord.position},
            {"duration", chord.duration},
            {"shortName", chord.shortName},
            {"longName", chord.longName},
            {"notes", chord.notes}};
}

std::string escaped(std::string_view character)
{
    const char32_t number = codePointOf(character);
    return concat("\\u", hexadecimal(static_cast<std::uint8_t>(number >> 8U)),
                  hexadecimal(static_cast<std::uint8_t>(number & 0xFFU)));
}

// What a line would not show as it is, and JSON allows inside a text, written as it writes the others.
std::string withoutControls(const std::string& json)
{
    std::string result;
    for (std::size_t i = 0; i < json.size();) {
        const auto lead = static_cast<std::uint8_t>(json[i]);
        const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        const std::string_view character = std::string_view(json).substr(i, length);
        const bool isShown = (lead >= 0x20 && lead < 0x7F) || plainLine(character) == character;
        if (isShown) {
            result += character;
        } else {
            result += escaped(character);
        }
        i += length;
    }
    return result;
}

} // namespace

std::string inspectJSON(const FileDescription& description, const std::optional<std::filesystem::path>& file)
{
    JSON object = JSON::object();
    if (file) {
        object["file"] = utf8Text(file->string());
    }
    object["division"] = description.division;
    object["lengthBeats"] = description.length;
    object["tempo"] = JSON::array();
    for (const FoundTempo& tempo : description.tempo) {
        object["tempo"].push_back({{"position", tempo.position}, {"bpm", tempo.bpm}});
    }
    object["tracks"] = JSON::array();
    for (const FoundTrack& track : description.tracks) {
        object["tracks"].push_back(trackObject(track));
    }
    object["chords"] = JSON::array();
    for (const FoundChord& chord : description.chords) {
        object["chords"].push_back(chordObject(chord));
    }
    object["warnings"] = description.warnings;
    if (description.moreWarnings > 0) {
        object["moreWarnings"] = description.moreWarnings;
    }
    return withoutControls(object.dump());
}

} // namespace volvelle
