#include "base/Checked.h"
#include "midi/MIDIConstants.h"
#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>

namespace volvelle {

namespace {

// An event of the flat list on its way: the bytes, the time, and its place among events of one time. What is
// behind the head still stands in the tree.
struct FlatEvent {
    enum class Rank : std::uint8_t { noteOff, other };

    std::array<std::uint8_t, 3> head{};
    std::uint8_t headCount = 0;
    std::span<const std::uint8_t> body;
    std::int64_t time = 0;
    double beats = 0.0;
    double duration = 0.0;
    std::uint8_t meta = 0x7F;
    Rank rank = Rank::other;

    std::shared_ptr<AUMIDIEventEx> event() const;
};

std::shared_ptr<AUMIDIEventEx> made(std::span<const std::uint8_t> bytes, std::int64_t time)
{
    return std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes.data(),
                                           checkedCast<std::uint32_t>(bytes.size()), time);
}

std::shared_ptr<AUMIDIEventEx> FlatEvent::event() const
{
    if (headCount == 0) {
        return made(body, time);
    }
    if (body.empty()) {
        return made(std::span(head).first(headCount), time);
    }
    std::vector<std::uint8_t> bytes(head.begin(), head.begin() + headCount);
    bytes.insert(bytes.end(), body.begin(), body.end());
    return made(bytes, time);
}

class Flattening {
public:
    explicit Flattening(double samplerate) : samplesPerBeat(samplerate / 2.0) {}

    void add(const EventNode& node);

    std::vector<FlatEvent> events;

private:
    FlatEvent& append(const EventNode& node, std::initializer_list<std::uint8_t> head);
    void addNote(const MidiNoteEvent& note);
    void addMeta(const MetaEvent& meta);
    void addUserData(const UserEvent& user);

    double samplesPerBeat;
};

std::uint8_t statusByte(std::uint8_t status, const EventNode& node)
{
    return checkedAdd<std::uint8_t>(status, node.channel);
}

FlatEvent& Flattening::append(const EventNode& node, std::initializer_list<std::uint8_t> head)
{
    FlatEvent& event = events.emplace_back();
    std::ranges::copy(head, event.head.begin());
    event.headCount = static_cast<std::uint8_t>(head.size());
    event.time = checkedCast<std::int64_t>(node.position * samplesPerBeat);
    event.beats = node.position;
    return event;
}

void Flattening::addNote(const MidiNoteEvent& note)
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

void Flattening::addMeta(const MetaEvent& meta)
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

void Flattening::addUserData(const UserEvent& user)
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

void Flattening::add(const EventNode& node)
{
    if (const auto* note = dynamic_cast<const MidiNoteEvent*>(&node)) {
        addNote(*note);
    } else if (const auto* program = dynamic_cast<const MidiProgramChangeEvent*>(&node)) {
        append(node, {statusByte(STATUS_PROGRAM, node), program->value});
    } else if (const auto* controller = dynamic_cast<const MidiControllerEvent*>(&node)) {
        append(node, {statusByte(STATUS_CONTROLLER, node), controller->number, controller->value});
    } else if (const auto* pitch = dynamic_cast<const MidiPitchBendEvent*>(&node)) {
        append(node, {statusByte(STATUS_PITCHBEND, node), pitch->bend.msb, pitch->bend.lsb});
    } else if (const auto* pressure = dynamic_cast<const MidiChannelPressureEvent*>(&node)) {
        append(node, {statusByte(STATUS_CPRESSURE, node), pressure->value});
    } else if (const auto* poly = dynamic_cast<const MidiPolyPressureEvent*>(&node)) {
        append(node, {statusByte(STATUS_PPRESSURE, node), poly->number, poly->value});
    } else if (const auto* meta = dynamic_cast<const MetaEvent*>(&node)) {
        addMeta(*meta);
    } else if (const auto* user = dynamic_cast<const UserEvent*>(&node)) {
        addUserData(*user);
    } else {
        append(node, {0, 0, 0}).beats = 0.0;
    }
}

std::vector<FlatEvent> flatten(const SequenceNode& tree, double samplerate)
{
    Flattening flattening(samplerate);
    for (const auto& track : tree.tracks) {
        for (const auto& event : required(track).events) {
            flattening.add(required(event));
        }
    }
    return std::move(flattening.events);
}

bool isBefore(const FlatEvent& a, const FlatEvent& b)
{
    return a.time != b.time ? a.time < b.time : a.rank < b.rank;
}

FlatEvent tempoEntry(const AUMIDIEventEx& event)
{
    FlatEvent entry;
    entry.time = event.event().eventSampleTime;
    return entry;
}

} // namespace

std::vector<std::shared_ptr<AUMIDIEventEx>> MIDISequence::nodesToAUMIDIEvent(double samplerate,
                                                                             std::uint8_t cable)
{
    std::vector<std::shared_ptr<AUMIDIEventEx>> result;
    if (!sequenceNode) {
        return result;
    }

    struct Entry {
        FlatEvent flat;
        std::shared_ptr<AUMIDIEventEx> event;
    };

    std::vector<Entry> entries;
    const MusicTrack tempoTrack = getTempoTrack();
    required(tempoTrack);
    for (auto& event : getTempoEvents(tempoTrack, samplerate)) {
        entries.push_back({tempoEntry(*event), event});
    }
    for (const FlatEvent& flat : flatten(*sequenceNode, samplerate)) {
        const auto event = flat.event();
        event->beats = flat.beats;
        event->duration = flat.duration;
        event->meta = flat.meta;
        event->pEvent()->cable = cable;
        entries.push_back({flat, event});
    }
    std::ranges::stable_sort(entries, isBefore, &Entry::flat);
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

std::vector<AUMIDIEvent> MIDISequence::nodesToAUMIDIEvent(double samplerate)
{
    std::vector<AUMIDIEvent> result;
    if (!sequenceNode) {
        return result;
    }
    auto events = flatten(*sequenceNode, samplerate);
    std::ranges::stable_sort(events, isBefore);
    for (const FlatEvent& flat : events) {
        AUMIDIEvent record{};
        record.eventSampleTime = flat.time;
        record.eventType = AURenderEventMIDI;
        const auto bytes = flat.headCount > 0 ? std::span<const std::uint8_t>(flat.head).first(flat.headCount)
                                              : flat.body.first(std::min<std::size_t>(flat.body.size(), 3));
        record.length = static_cast<std::uint16_t>(bytes.size());
        std::ranges::copy(bytes, record.data);
        if (record.data[0] == 0) {
            logLine("INVALID EVENT (status): ", result.size());
        }
        result.push_back(record);
    }
    return result;
}

} // namespace volvelle
