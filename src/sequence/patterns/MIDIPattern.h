#pragma once

#include "sequence/MIDISequence.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <source_location>
#include <string_view>

namespace volvelle {

// A sequence of one music track, and edits over a range of beats, also between two patterns.
//
// The edits over a range stand behind an inverted test: a valid range, which is one that holds something,
// changes nothing at all, and only an empty one reaches the service, where it has nothing to do either. What
// changes a pattern are the merges without a range. A failure is a line on the console.
//
// An absent track is a fatal stop in all edits and in the length, of this pattern as of the other.
// setMusicSequence leaves musicTrack as it was.
class MIDIPattern : public MIDISequence {
public:
    static constexpr std::uint16_t trackCount = 1;

    MusicTrack musicTrack; // null for none

    // File tracks stay as they are when a file is loaded.
    MIDIPattern();

    // A new music sequence with one track, whatever the number. The tree stays as it was. On failure there is
    // no musicTrack.
    void create(std::uint16_t numberOfTracks = trackCount) override;
    // musicTrack, whatever the index. None is a fatal stop.
    MusicTrack getTrack(int trackIndex) override;
    // The length of musicTrack; 0 on failure.
    double getLength() override;

    // The first track of the tree into musicTrack; the tempo track of the tree is not written.
    void sequenceNodeToMusicSequence() override;
    void trackNodeToMusicTrack(const std::shared_ptr<TrackNode>& trackNode, const MusicTrack& track) override;
    void patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                 const MusicTrack& track) override;

    // musicTrack becomes the first track of the file, null where it has none. A file that cannot be read
    // leaves one empty track.
    void loadFromFile(const std::filesystem::path& url) override;

    // MARK: Edits
    //
    // All run check(from, to) on their range, and return where it answers true. Then those with a destination
    // run check(to) on it, and the service gets the corrected values. The length is this pattern's.

    virtual void clearRange(double from, double to);
    virtual void cut(double from, double to);
    // `to` is what the service adds to the positions.
    virtual void move(double begin, double end, double to);

    // All of the source's track, added at 0. No check is run. An absent pattern is reported.
    virtual void mergeFrom(const std::shared_ptr<MIDIPattern>& other);
    virtual void mergeTo(const std::shared_ptr<MIDIPattern>& other);

    // Report an absent pattern, where the range lets them get so far.
    virtual void mergeFrom(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to);
    virtual void mergeTo(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to);

    // An absent pattern is a fatal stop, where the range lets them get so far.
    virtual void copyFrom(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to);
    virtual void copyTo(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to);

    // Moves both into the track and puts them in order, with a line for each correction. True if they then
    // differ.
    virtual bool check(double& from, double& to);
    // The same for a destination; always true.
    virtual bool check(double& to);

private:
    static void merge(const MusicTrack& source, double begin, double end, const MusicTrack& destination,
                      double at);
    static void reportStatus(OSStatus status, std::string_view text,
                             std::source_location place = std::source_location::current());
};

} // namespace volvelle
