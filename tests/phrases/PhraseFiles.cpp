#include "tests/phrases/PhraseFiles.h"

#include "base/Paths.h"
#include "base/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace volvelle::test {

namespace fs = std::filesystem;

void writeFile(const fs::path& path, const PhraseFile& file)
{
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    MusicSequence sequence;
    MusicTrack track;
    ASSERT_EQ(NewMusicSequence(sequence), noErr);
    ASSERT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
    for (const auto& note : file.notes) {
        const MIDINoteMessage message{byte(note.channel), byte(note.number), byte(note.velocity),
                                      byte(note.releaseVelocity), static_cast<float>(note.duration)};
        ASSERT_EQ(MusicTrackNewMIDINoteEvent(track, note.position, message), noErr);
    }
    for (const auto& controller : file.controllers) {
        const MIDIChannelMessage message{byte(0xB0 + controller.channel), byte(controller.number),
                                         byte(controller.value), 0};
        ASSERT_EQ(MusicTrackNewMIDIChannelEvent(track, controller.position, message), noErr);
    }
    for (const double position : file.markers) {
        const MIDIMetaEvent marker{6, 0, 0, 0, 1, {'A'}};
        ASSERT_EQ(MusicTrackNewMetaEvent(track, position, &marker), noErr);
    }
    std::vector<std::uint8_t> bytes;
    ASSERT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 0, 480, bytes), noErr);
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(stream.flush()) << path;
}

std::vector<std::string> notesOf(MIDISequence16& sequence, double offset)
{
    std::vector<std::string> notes;
    for (int index = 0; index < sequence.getNumberOfTracks(); ++index) {
        for (const auto& event : sequence.getTrackEvents(index)) {
            if (const auto* note = std::get_if<MIDINoteMessage>(&event.event)) {
                notes.push_back(concat(event.eventTimeStamp + offset, " ", note->channel, " ", note->note,
                                       " ", note->velocity, " ", note->releaseVelocity, " ", note->duration));
            }
        }
    }
    return notes;
}

std::vector<std::string> withoutTrackEnds(const std::vector<std::string>& lines)
{
    const std::vector<std::string> trackEnd{
        "MIDISequence::Warnung: -10857. \nDas Folge Event konnte nicht abgerufen werden (Ende der Spur?).",
        "Fehler: -10857", "The operation could not be completed (status -10857).", "Ende der Spur."};
    std::vector<std::string> rest = lines;
    for (auto found = std::ranges::search(rest, trackEnd); !found.empty();
         found = std::ranges::search(rest, trackEnd)) {
        rest.erase(found.begin(), found.end());
    }
    return rest;
}

PhraseLibrary::PhraseLibrary()
{
    for (const char* folder : {chordPatterns, chordPhrases, leads, basses, drums}) {
        fs::create_directories(at(folder));
    }
    setResourcesFolder(root.path);
}

PhraseLibrary::~PhraseLibrary()
{
    setResourcesFolder(std::nullopt);
}

void PhraseLibrary::add(const std::string& folder, const PhraseFile& file)
{
    char name[16];
    std::snprintf(name, sizeof(name), "%03d.mid", ++counts[folder]);
    writeFile(at(folder) + name, file);
}

void PhraseLibrary::fill()
{
    auto chords = struck(0.0, {60, 64, 67});
    for (const auto& note : struck(4.0, {65, 69, 72})) {
        chords.push_back(note);
    }
    add(chordPatterns, {chords, {}, {}});
    add(chordPatterns, {struck(0.0, {69, 72, 76}), {}, {}});
    int number = 61;
    for (const char* folder : {chordPhrases, leads, basses}) {
        add(folder, {{{0.0, number, 1.0}, {5.0, number, 0.5}}, {}, {}});
        add(folder, {{{2.0, number + 1, 1.0}}, {}, {}});
        number -= 12;
    }
    add(drums, {{{0.0, 36, 0.25}, {3.5, 38, 0.25}}, {}, {}});
    add(drums, {{{1.0, 42, 0.25}}, {}, {}});
}

std::vector<FileNote> struck(double position, const std::vector<int>& numbers)
{
    std::vector<FileNote> notes;
    for (const int number : numbers) {
        notes.push_back({position, number, 4.0});
    }
    return notes;
}

} // namespace volvelle::test
