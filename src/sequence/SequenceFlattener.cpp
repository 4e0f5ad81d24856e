#include "sequence/SequenceFlattener.h"

#include "base/Checked.h"
#include "sequence/EventKinds.h"
#include "sequence/SequenceLog.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

std::uint8_t statusByte(std::uint8_t status, const EventNode& node)
{
    return checkedAdd<std::uint8_t>(status, node.channel);
}

// A realtime event and its place in the list.
struct Entry {
    FlatEvent flat;
    std::shared_ptr<AUMIDIEventEx> event;
};

Entry tempoEntry(const std::shared_ptr<AUMIDIEventEx>& event)
{
    Entry entry{{}, event};
    entry.flat.time = event->event().eventSampleTime;
    return entry;
}

} // namespace

SequenceFlattener::SequenceFlattener(const SequenceNode& tree, double samplerate)
    : samplesPerBeat(samplerate / 2.0)
{
    for (const auto& track : tree.tracks) {
        for (const auto& event : required(track).events) {
            add(required(event));
        }
    }
}

std::vector<std::shared_ptr<AUMIDIEventEx>>
SequenceFlattener::events(std::span<const std::shared_ptr<AUMIDIEventEx>> tempoEvents,
                          std::uint8_t cable) const
{
    std::vector<Entry> entries;
    for (const auto& event : tempoEvents) {
        entries.push_back(tempoEntry(event));
    }
    for (const FlatEvent& flat : flatEvents) {
        entries.push_back({flat, flat.event()});
        entries.back().event->pEvent()->cable = cable;
    }
    std::ranges::stable_sort(entries, FlatEvent::isBefore, &Entry::flat);
    std::vector<std::shared_ptr<AUMIDIEventEx>> result;
    result.reserve(entries.size());
    for (Entry& entry : entries) {
        entry.event->id = checkedCast<int>(result.size());
        if (entry.event->event().data[0] == 0) {
            logLine("INVALID EVENT (status): AUMIDIEventEx");
        }
        result.push_back(std::move(entry.event));
    }
    return result;
}

std::vector<AUMIDIEvent> SequenceFlattener::records() const
{
    auto sorted = flatEvents;
    std::ranges::stable_sort(sorted, FlatEvent::isBefore);
    std::vector<AUMIDIEvent> result;
    result.reserve(sorted.size());
    for (const FlatEvent& flat : sorted) {
        result.push_back(flat.record());
        if (result.back().data[0] == 0) {
            logLine("INVALID EVENT (status): ", result.size() - 1);
        }
    }
    return result;
}

FlatEvent& SequenceFlattener::append(const EventNode& node, std::initializer_list<std::uint8_t> head)
{
    FlatEvent& event = flatEvents.emplace_back();
    std::ranges::copy(head, event.head.begin());
    event.headCount = static_cast<std::uint8_t>(head.size());
    event.time = checkedCast<std::int64_t>(node.position * samplesPerBeat);
    event.beats = node.position;
    return event;
}

void SequenceFlattener::add(const EventNode& node)
{
    if (const auto* note = dynamic_cast<const MidiNoteEvent*>(&node)) {
        addNote(*note);
    } else if (const auto* meta = dynamic_cast<const MetaEvent*>(&node)) {
        addMeta(*meta);
    } else if (const auto* user = dynamic_cast<const UserEvent*>(&node)) {
        addUserData(*user);
    } else if (!addChannelEvent(node)) {
        append(node, {0, 0, 0}).beats = 0.0;
    }
}

void SequenceFlattener::addNote(const MidiNoteEvent& note)
{
    FlatEvent& on = append(note, {statusByte(STATUS_NOTEON, note), note.number, note.velocity});
    on.duration = static_cast<double>(note.duration);
    const std::int64_t start = on.time;

    FlatEvent& off = append(note, {statusByte(STATUS_NOTEOFF, note), note.number, note.releaseVelocity});
    const float samples = note.duration * static_cast<float>(samplesPerBeat);
    off.time = checkedAdd(start, checkedCast<std::int64_t>(samples));
    off.beats = note.position + static_cast<double>(note.duration);
    off.rank = off.time == start ? FlatEvent::Rank::other : FlatEvent::Rank::noteOff;
}

bool SequenceFlattener::addChannelEvent(const EventNode& node)
{
    return EventKinds::withFirst(
        [&]<class Node>(const EventKind<Node>& kind) {
            return kind.hasChannel() && dynamic_cast<const Node*>(&node) != nullptr;
        },
        [&]<class Node>(const EventKind<Node>& kind) {
            if constexpr (ShortMessageNode<Node>) {
                addMessage(static_cast<const Node&>(node), kind.code);
            }
        });
}

template <ShortMessageNode Node>
void SequenceFlattener::addMessage(const Node& message, std::uint8_t status)
{
    FlatEvent& event = append(message, {statusByte(status, message)});
    for (const std::uint8_t* byte : dataBytes(message)) {
        event.head[event.headCount++] = *byte;
    }
}

void SequenceFlattener::addMeta(const MetaEvent& meta)
{
    if (meta.data.empty()) {
        return logLine("error: data count of meta is zero.");
    }
    if (meta.length < 1) {
        return logLine("error: meta length is smaller than 1.");
    }
    FlatEvent& event = append(meta, {STATUS_RESERVED4, meta.type, 0});
    event.body = meta.data;
    event.meta = meta.type;
}

void SequenceFlattener::addUserData(const UserEvent& user)
{
    const bool exclusive = dynamic_cast<const SystemExclusiveEvent*>(&user) != nullptr;
    logLine(exclusive ? " S Y S E X" : " U S E R E V E N T", " : length = ", user.length, " : ",
            user.toHex());
    if (user.data.empty() || user.data.front() == 0) {
        return logLine("error: data of user event is 0.");
    }
    if (user.length < 1) {
        return logLine("error: user event length is smaller than 1.");
    }
    append(user, {}).body = user.data;
}

} // namespace volvelle
