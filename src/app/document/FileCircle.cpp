#include "app/document/FileCircle.h"

#include "app/document/CircleBeats.h"
#include "sequence/MIDISequence16.h"
#include "services/files/SafeFile.h"
#include "services/musicsequence/MusicSequence.h"
#include "wire/ShortMessage.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr double samplerate = 48000.0;

double longestTrack(MIDISequence& sequence, const MusicSequence& content)
{
    double longest = 0.0;
    std::uint32_t count = 0;
    if (MusicSequenceGetTrackCount(content, count) != noErr) {
        return longest;
    }
    for (std::uint32_t index = 0; index < count; ++index) {
        MusicTrack track;
        if (MusicSequenceGetIndTrack(content, index, track) == noErr) {
            longest = std::max(longest, sequence.getTrackLength(track));
        }
    }
    return longest;
}

} // namespace

FileCircle::FileCircle(const std::filesystem::path& file) : beats(circleBeats(0.0))
{
    std::vector<std::uint8_t> data;
    if (readFile(file, data) == noErr) {
        load(data);
    }
}

FileCircle::FileCircle(const std::vector<std::uint8_t>& data) : beats(circleBeats(0.0))
{
    load(data);
}

void FileCircle::load(const std::vector<std::uint8_t>& data)
{
    MusicSequence content;
    if (NewMusicSequence(content) != noErr ||
        MusicSequenceFileLoadData(content, data, kMusicSequenceFile_MIDIType,
                                  kMusicSequenceLoadSMF_ChannelsToTracks) != noErr) {
        return;
    }
    MIDISequence16 sequence;
    sequence.setMusicSequence(content);
    beats = circleBeats(longestTrack(sequence, content));
    sequence.musicSequenceToSequenceNode();
    events = sequence.nodesToAUMIDIEvent(samplerate, 0);
    count = static_cast<int>(std::ranges::count_if(events, [](const auto& event) {
        return event->length() > 2 && isNoteOn({event->data()[0], event->data()[1], event->data()[2]});
    }));
}

} // namespace volvelle
