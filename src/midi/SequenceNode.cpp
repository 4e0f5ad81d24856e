#include "midi/SequenceNode.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::uint8_t tempoChannel = 0xFF;

void printLimit()
{
    directPrint("Fehler: Die Anzahl der Spuren ist auf ", SequenceNode::maxTracks, " begrenzt");
}

} // namespace

SequenceNode::SequenceNode()
{
    counter = 1;
    makeTempoTrack();
    SequenceNode::addTrack();
}

SequenceNode::SequenceNode(std::uint16_t trackCount)
{
    counter = 1;
    makeTempoTrack();
    appendTrack(0);
    if (trackCount > maxTracks) {
        printLimit();
        return;
    }
    for (const int channel : checkedRange(1, int{trackCount})) {
        appendTrack(checkedCast<std::uint8_t>(channel));
    }
    numberOfTracks = SequenceNode::getTrackCount();
}

void SequenceNode::makeTempoTrack()
{
    tempoTrack = std::make_shared<TrackNode>();
    tempoTrack->sequence = this;
    tempoTrack->isTempoTrack = true;
    tempoTrack->channel = tempoChannel;
}

void SequenceNode::appendTrack(std::uint8_t channel)
{
    auto track = std::make_shared<TrackNode>();
    track->channel = channel;
    track->sequence = this;
    tracks.push_back(std::move(track));
}

std::uint16_t SequenceNode::addTrack()
{
    if (numberOfTracks > maxTracks) {
        printLimit();
        return 0;
    }
    appendTrack(0);
    numberOfTracks = SequenceNode::getTrackCount();
    return tracks.back()->id;
}

void SequenceNode::removeTrack(std::uint16_t id)
{
    const auto found =
        std::ranges::find_if(tracks, [id](const auto& track) { return required(track).id == id; });
    if (found != tracks.end()) {
        tracks.erase(found);
    }
}

std::shared_ptr<TrackNode> SequenceNode::getrack(std::uint16_t id) const
{
    const auto found =
        std::ranges::find_if(tracks, [id](const auto& track) { return required(track).id == id; });
    return found == tracks.end() ? nullptr : *found;
}

std::shared_ptr<TrackNode> SequenceNode::getTrack(std::uint16_t index) const
{
    if (index >= numberOfTracks) {
        directPrint("Warnung: Der Spur Index wurde auf das Maximum (", numberOfTracks, ") gesetzt. ");
        index = checkedSubtract(numberOfTracks, 1);
    }
    return checkedAt(tracks, index);
}

std::shared_ptr<TrackNode> SequenceNode::getTempoTrack() const
{
    required(tempoTrack);
    return tempoTrack;
}

std::uint16_t SequenceNode::getTrackCount() const
{
    return checkedCast<std::uint16_t>(tracks.size());
}

std::vector<std::shared_ptr<TrackNode>> SequenceNode::children() const
{
    return tracks;
}

std::shared_ptr<TrackNode> SequenceNode::child(std::uint16_t index) const
{
    auto track = getTrack(index);
    required(track);
    return track;
}

void SequenceNode::clear()
{
    required(tempoTrack).clearEvents();
    std::ranges::for_each(tracks, [](const auto& track) { required(track).clear(); });
}

void SequenceNode::diagnostics() const
{
    directPrint(
        "\n\n+++++++++++++++++++++++++++++++++++++ Sequence +++++++++++++++++++++++++++++++++++++START\n\n");
    directPrint("\n\tTrack 0 / Tempo Track:");
    getTempoTrack()->dumpout();
    directPrint("\nDie Anzahl der (Music) Tracks ist ", tracks.size(), ".");
    directPrint("Tracks:");
    for (const auto& track : tracks) {
        directPrint("\n\tTrack ", required(track).className(), ":");
    }
    directPrint(
        "\n\n+++++++++++++++++++++++++++++++++++++ Sequence ++++++++++++++++++++++++++++++++++++++STOP\n\n");
}

} // namespace volvelle
