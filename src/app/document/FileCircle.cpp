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

FileCircle::FileCircle(const std::filesystem::path& file, const std::stop_token& stop)
    : beats(circleBeats(0.0))
{
    std::vector<std::uint8_t> data;
    if (!stop.stop_requested() && readFile(file, data) == noErr) {
        load(data, stop);
    }
}

FileCircle::FileCircle(const std::vector<std::uint8_t>& data, const std::stop_token& stop)
    : beats(circleBeats(0.0))
{
    load(data, stop);
}

void FileCircle::load(const std::vector<std::uint8_t>& data, const std::stop_token& stop)
{
    MusicSequence content;
    if (NewMusicSequenceFromData(data, kMusicSequenceLoadSMF_ChannelsToTracks, content) != noErr) {
        return;
    }
    MIDISequence16 sequence;
    sequence.setMusicSequence(content);
    if (stop.stop_requested()) {
        return;
    }
    beats = circleBeats(longestTrack(sequence, content));
    sequence.musicSequenceToSequenceNode();
    if (stop.stop_requested()) {
        return;
    }
    events = sequence.nodesToAUMIDIEvent(samplerate, 0);
    count = static_cast<int>(std::ranges::count_if(events, [](const auto& event) {
        return event->length() > 2 && isNoteOn({event->data()[0], event->data()[1], event->data()[2]});
    }));
}

} // namespace volvelle
