#include "app/document/MIDIDocument.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "phrases/MIDIClipGenerator.h"
#include "sequence/SequenceFileBytes.h"

namespace volvelle {

namespace {

constexpr double samplerate = 48000.0;
constexpr std::uint8_t cable = 0;

} // namespace

std::optional<std::vector<std::uint8_t>> MIDIDocument::generateMIDIFile()
{
    MIDIClipGenerator generator;
    const auto sequence = generator.makeArrangement(false);
    if (!required(sequence).musicSequence) {
        directPrint("MIDIDocument::generateMIDIFile() : Error: MusicSequence is nil.");
        return std::nullopt;
    }
    auto result = sequenceData(sequence->musicSequence);
    showEvents(*sequence);
    play(result);
    return result;
}

void MIDIDocument::showEvents(MIDISequence& sequence)
{
    sequence.musicSequenceToSequenceNode();
    fileEvents = sequence.nodesToAUMIDIEvent(samplerate, cable);
    if (const auto screen = delegate.lock()) {
        screen->midiDocumentUpdateEvents(fileEvents);
    }
}

void MIDIDocument::play(const std::optional<std::vector<std::uint8_t>>& content)
{
    if (const auto screen = delegate.lock()) {
        screen->midiDocumentPlaySequence(required(content));
    }
}

std::optional<std::vector<std::uint8_t>> MIDIDocument::sequenceData(const MusicSequence& sequence)
{
    std::vector<std::uint8_t> bytes;
    if (const OSStatus status = sequenceFileBytes(sequence, bytes); status != noErr) {
        directPrint("MIDIDocument::sequenceData() : Error: Could not convert music sequence to data. "
                    "Status: ",
                    status);
        return std::nullopt;
    }
    return bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

MusicSequence MIDIDocument::sequenceFromData(const std::vector<std::uint8_t>& bytes)
{
    MusicSequence sequence;
    OSStatus status = NewMusicSequence(sequence);
    if (status != noErr) {
        directPrint("MIDIDocument::sequenceFromData() : Error: Could not create a new music sequence. "
                    "Status: ",
                    status);
        return nullptr;
    }
    status = MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType,
                                       kMusicSequenceLoadSMF_ChannelsToTracks);
    if (status != noErr) {
        directPrint("MIDIDocument::sequenceFromData() : Error: Could not populate music sequence with "
                    "data. Status: ",
                    status);
        return nullptr;
    }
    return sequence;
}

Result<> MIDIDocument::load(const DocumentContents& fromContents,
                            const std::optional<std::string>& /*ofType*/)
{
    fileEvents.clear();
    directPrint("MIDIDocument::load() :");
    directPrint(" - url: ", fileURL().string());
    directPrint(" - type: ", fileType().value_or("?"));
    data = fromContents.bytes;
    if (!data) {
        directPrint("MIDIDocument::load() : Error: ", fromContents.name, " is not an instance of NSData.");
        return {};
    }
    const MusicSequence musicSequence = sequenceFromData(*data);
    if (!musicSequence) {
        directPrint("MIDIDocument::load() : Error: MusicSequence is nil.");
        return {};
    }
    MIDIClipGenerator generator;
    generator.makeArrangement(true);
    MIDISequence& sequence = required(required(generator.phraseMixer).sequence);
    sequence.setMusicSequence(musicSequence);
    showEvents(sequence);
    play(data);
    return {};
}

std::optional<DocumentContents> MIDIDocument::contents(const std::string& forType)
{
    directPrint("MIDIDocument::contents()");
    directPrint(" - type: ", forType);
    if (!data) {
        directPrint("MIDIDocument::contents() : Error: Data is nil.");
        return std::nullopt;
    }
    return DocumentContents{data, {}};
}

Result<> MIDIDocument::read(const std::filesystem::path& from)
{
    directPrint("MIDIDocument::read()");
    return UIDocument::read(from);
}

} // namespace volvelle
