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

// The control characters that JSON allows inside a text, written as it writes the others.
std::string withoutControls(const std::string& json)
{
    std::string result;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const bool isUpper = json[i] == '\xC2' && static_cast<std::uint8_t>(json[i + 1]) < 0xA0;
        if (json[i] == '\x7F' || isUpper) {
            i += isUpper ? 1 : 0;
            result += "\\u00" + hexadecimal(static_cast<std::uint8_t>(json[i]));
        } else {
            result += json[i];
        }
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
    return withoutControls(object.dump());
}

} // namespace volvelle
