#include "services/musicsequence/smf/SMFTrackWriter.h"

#include "services/musicsequence/MusicTrackObject.h"
#include "wire/ShortMessage.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace volvelle {

namespace {

// A track that reaches beyond it would need 4 GiB for its delta times alone.
constexpr double greatestTick = 1.6e17;

const MIDINoteMessage& noteOf(const void* record)
{
    return *static_cast<const MIDINoteMessage*>(record);
}

std::size_t keyOf(const void* record)
{
    return noteOf(record).channel * std::size_t{128} + noteOf(record).note;
}

bool fits(MusicEventType type, const void* record)
{
    switch (type) {
    case kMusicEventType_Meta:
        return static_cast<const MIDIMetaEvent*>(record)->dataLength <= SMFByteWriter::greatestNumber;
    case kMusicEventType_MIDIRawData:
        return static_cast<const MIDIRawData*>(record)->length <= SMFByteWriter::greatestNumber;
    default:
        return true;
    }
}

bool isWritten(MusicEventType type, const void* record)
{
    switch (type) {
    case kMusicEventType_Meta:
        return static_cast<const MIDIMetaEvent*>(record)->metaEventType != META_EOT;
    case kMusicEventType_ExtendedTempo:
    case kMusicEventType_MIDINoteMessage:
    case kMusicEventType_MIDIChannelMessage:
    case kMusicEventType_MIDIRawData:
        return true;
    default:
        return false;
    }
}

} // namespace

bool SMFTrackWriter::tickOf(double time, std::uint64_t& result) const
{
    const double ticks = time * ticksABeat;
    if (!(ticks <= greatestTick)) {
        return false;
    }
    result = static_cast<std::uint64_t>(std::llround(ticks));
    return true;
}

bool SMFTrackWriter::add(MusicTrackObject& track)
{
    std::uint64_t end = 0;
    if (!tickOf(track.length, end)) {
        return false;
    }
    endTick = std::max(endTick, end);
    const auto events = track.events.all();
    items.reserve(items.size() + events.size());
    return std::ranges::all_of(events, [this, &track](const MusicEvent& event) {
        return addItem(event.time, event.type, track.events.payload(event));
    });
}

bool SMFTrackWriter::addItem(double time, MusicEventType type, const void* record)
{
    Item item{0, 0, record, type, 0};
    if (!tickOf(time, item.tick) || !tickOf(endOfEvent(time, type, record), item.end) ||
        !fits(type, record)) {
        return false;
    }
    endTick = std::max(endTick, item.tick);
    if (isWritten(type, record)) {
        isSorted = isSorted && (items.empty() || items.back().tick <= item.tick);
        endTick = std::max(endTick, item.end);
        items.push_back(item);
    }
    return true;
}

bool SMFTrackWriter::write()
{
    if (!isSorted) {
        std::ranges::stable_sort(items, {}, &Item::tick);
    }
    collectOffs();
    writer.makeRoom(items.size() * 8);
    writer.putName("MTrk");
    writer.put32(0);
    const std::size_t start = writer.size();
    auto off = offs.begin();
    for (const Item& item : items) {
        for (; off != offs.end() && off->tick <= item.tick; ++off) {
            writeOff(*off);
        }
        writeItem(item);
    }
    std::for_each(off, offs.end(), [this](const Off& left) { writeOff(left); });
    writeSystem(STATUS_FILE_META, endTick);
    writer.put(META_EOT);
    writer.put(0);
    const std::size_t length = writer.size() - start;
    if (length > 0xFFFFFFFFU || writer.isOverfull()) {
        return false;
    }
    writer.set32(start - 4, static_cast<std::uint32_t>(length));
    return true;
}

void SMFTrackWriter::collectOffs()
{
    offs.reserve(items.size());
    std::array<std::uint64_t, 2048> latest{};
    bool isPaired = true;
    for (std::size_t i = 0; i < items.size(); ++i) {
        Item& item = items[i];
        if (item.type == kMusicEventType_MIDINoteMessage) {
            std::uint64_t& before = latest[keyOf(item.record)];
            isPaired = isPaired && before <= item.end;
            before = item.end;
            item.release = noteOf(item.record).releaseVelocity;
            offs.push_back({item.end, i, item.release});
        }
    }
    if (!isPaired) {
        sortOffs();
        pairOffs();
    }
    std::erase_if(offs, [this](const Off& off) { return off.tick == items[off.item].tick; });
    sortOffs();
}

void SMFTrackWriter::sortOffs()
{
    const auto isBefore = [](const Off& a, const Off& b) {
        return a.tick != b.tick ? a.tick < b.tick : a.item < b.item;
    };
    if (!std::ranges::is_sorted(offs, isBefore)) {
        std::ranges::sort(offs, isBefore);
    }
}

// Gives the sorted ends of each channel and key to its notes in their order.
void SMFTrackWriter::pairOffs()
{
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::array<std::size_t, 2048> heads{};
    heads.fill(none);
    std::vector<std::size_t> followers(items.size(), none);
    for (std::size_t i = items.size(); i-- > 0;) {
        if (items[i].type == kMusicEventType_MIDINoteMessage) {
            std::size_t& head = heads[keyOf(items[i].record)];
            followers[i] = head;
            head = i;
        }
    }
    for (Off& off : offs) {
        std::size_t& head = heads[keyOf(items[off.item].record)];
        off.item = head;
        items[head].end = off.tick;
        items[head].release = off.release;
        head = followers[head];
    }
}

void SMFTrackWriter::writeItem(const Item& item)
{
    switch (item.type) {
    case kMusicEventType_MIDINoteMessage:
        writeNote(item);
        break;
    case kMusicEventType_MIDIChannelMessage:
        writeMessage(item);
        break;
    case kMusicEventType_ExtendedTempo:
        writeTempo(item);
        break;
    case kMusicEventType_Meta:
        writeMeta(item);
        break;
    default:
        writeRawData(item);
    }
}

void SMFTrackWriter::writeNote(const Item& item)
{
    const MIDINoteMessage& note = noteOf(item.record);
    writeStatus(statusOf(STATUS_NOTEON, note.channel), item.tick);
    writer.put(note.note);
    writer.put(std::max<std::uint8_t>(note.velocity, 1));
    if (item.end == item.tick) {
        writeOff({item.tick, static_cast<std::size_t>(&item - items.data()), item.release});
    }
}

void SMFTrackWriter::writeOff(const Off& off)
{
    const MIDINoteMessage& note = noteOf(items[off.item].record);
    writeStatus(statusOf(off.release == 0 ? STATUS_NOTEON : STATUS_NOTEOFF, note.channel), off.tick);
    writer.put(note.note);
    writer.put(off.release);
}

void SMFTrackWriter::writeMessage(const Item& item)
{
    const auto& message = *static_cast<const MIDIChannelMessage*>(item.record);
    const ShortMessage bytes{message.status, message.data1, message.data2};
    const std::span all =
        std::span(bytes).first(static_cast<std::size_t>(shortMessageLength(message.status)));
    if (message.status >= STATUS_SYSEX) {
        writeSystem(STATUS_EOX, item.tick);
        writer.putNumber(static_cast<std::uint32_t>(all.size()));
        writer.put(all);
    } else {
        writeStatus(message.status, item.tick);
        writer.put(all.subspan(1));
    }
}

void SMFTrackWriter::writeMeta(const Item& item)
{
    const auto& meta = *static_cast<const MIDIMetaEvent*>(item.record);
    writeSystem(STATUS_FILE_META, item.tick);
    writer.put(meta.metaEventType);
    writer.putNumber(meta.dataLength);
    writer.put({&meta.data[0], meta.dataLength});
}

void SMFTrackWriter::writeTempo(const Item& item)
{
    const double bpm = static_cast<const ExtendedTempoEvent*>(item.record)->bpm;
    const auto microseconds =
        static_cast<std::uint32_t>(std::lround(std::clamp(60.0e6 / bpm, 1.0, 16777215.0)));
    writeSystem(STATUS_FILE_META, item.tick);
    writer.put(META_SETTEMPO);
    writer.put(3);
    writer.put(static_cast<std::uint8_t>(microseconds >> 16U));
    writer.put16(microseconds);
}

void SMFTrackWriter::writeRawData(const Item& item)
{
    const auto& raw = *static_cast<const MIDIRawData*>(item.record);
    std::span<const std::uint8_t> bytes(&raw.data[0], raw.length);
    const bool isExclusive = !bytes.empty() && bytes.front() == STATUS_SYSEX;
    bytes = bytes.subspan(isExclusive ? 1 : 0);
    writeSystem(isExclusive ? STATUS_SYSEX : STATUS_EOX, item.tick);
    writer.putNumber(static_cast<std::uint32_t>(bytes.size()));
    writer.put(bytes);
}

void SMFTrackWriter::writeStatus(std::uint8_t status, std::uint64_t tick)
{
    writeDelta(tick);
    if (status != running) {
        writer.put(status);
        running = status;
    }
}

void SMFTrackWriter::writeSystem(std::uint8_t status, std::uint64_t tick)
{
    writeDelta(tick);
    writer.put(status);
    running = 0;
}

void SMFTrackWriter::writeDelta(std::uint64_t tick)
{
    if (writer.putDelta(tick - now)) {
        running = 0;
    }
    now = tick;
}

} // namespace volvelle
