#pragma once

#include "midi/TrackNode.h"

#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// The root of a sequence's tree: a tempo track and the music tracks. A null among the tracks is a fatal stop
// wherever it is met. Used by one thread at a time, and trees are built on one thread at a time.
class SequenceNode : public LinkTarget {
public:
    // A tree with one track.
    SequenceNode();

    // A tree with that many tracks on the channels 0, 1, 2 and so on. Above the limit of tracks it says so on
    // the console and keeps one track; 0 and 257 to 1000 are fatal stops.
    explicit SequenceNode(std::uint16_t trackCount);

    virtual ~SequenceNode() = default;

    // The next event number of the thread. Every new tree sets it to 1, so uids are unique only within
    // the tree built last.
    static inline thread_local std::int64_t counter = 1;

    static constexpr std::uint16_t maxTracks = 1000;
    std::uint16_t numberOfTracks = 1; // kept beside `tracks`; removing a track leaves it as it was
    std::shared_ptr<TrackNode> tempoTrack;
    std::vector<std::shared_ptr<TrackNode>> tracks;
    std::string text = "Song Beschreibung";
    std::string copyright = "(C) Volvelle";

    // Appends a track on channel 0 and returns its id, 0. Above the limit it says so and appends nothing.
    virtual std::uint16_t addTrack();

    // Removes the first track with that id.
    virtual void removeTrack(std::uint16_t id);

    // The first track with that id, else null.
    virtual std::shared_ptr<TrackNode> getrack(std::uint16_t id) const;

    // The track at that index. One at or above `numberOfTracks` becomes the last, with a warning; where the
    // count has grown stale, that is a fatal stop.
    virtual std::shared_ptr<TrackNode> getTrack(std::uint16_t index) const;

    // None is a fatal stop.
    virtual std::shared_ptr<TrackNode> getTempoTrack() const;

    virtual std::uint16_t getTrackCount() const;
    virtual std::vector<std::shared_ptr<TrackNode>> children() const;

    // As getTrack.
    virtual std::shared_ptr<TrackNode> child(std::uint16_t index) const;

    // Empties all tracks, which stay in place. No tempo track is a fatal stop.
    virtual void clear();

    // Prints the whole tree to the console, at once.
    virtual void diagnostics() const;

    // How the node describes itself.
    virtual std::string_view className() const { return "SequenceNode"; }

private:
    void makeTempoTrack();
    void appendTrack(std::uint8_t channel);
};

} // namespace volvelle
