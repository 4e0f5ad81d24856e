#include "services/musicsequence/smf/SMFTrackReader.h"

#include "wire/ShortMessage.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint32_t greatestNumber = 0x0FFFFFFF;

} // namespace

SMFTrackReader::SMFTrackReader(std::span<const std::uint8_t> file, std::size_t from, SMFEvents& events,
                               SMFOpenNotes& notes, SMFBudget& budget)
    : file(file),
      position(file.data() + from),
      end(position),
      events(events),
      openNotes(notes),
      budget(budget)
{
    track.first = events.size();
}

bool SMFTrackReader::read(std::size_t limit)
{
    end = file.data() + limit;
    Outcome outcome = Outcome::done;
    while (outcome == Outcome::done && position < end && !budget.isSpent()) {
        outcome = readEvent();
    }
    return outcome == Outcome::atEnd;
}

SMFTrack SMFTrackReader::finish()
{
    track.end = std::max(track.end, lastTick);
    track.count = events.size() - track.first;
    report.openNotes = openNotes.endAll(events, track.end);
    return track;
}

SMFTrackReader::Outcome SMFTrackReader::readEvent()
{
    const std::uint8_t* from = position;
    std::uint64_t at = tick;
    if (!isResuming) {
        std::uint32_t delta = 0;
        if (!readNumber(from, delta)) {
            return Outcome::notWhole;
        }
        at += delta;
    }
    if (from == end) {
        return Outcome::notWhole;
    }
    if (!isStatus(*from)) {
        return running == 0 ? skipOrphans(from, at) : readMessage(from, running, at);
    }
    const std::uint8_t status = *from++;
    return status < STATUS_SYSEX ? readMessage(from, status, at) : readSystem(from, status, at);
}

SMFTrackReader::Outcome SMFTrackReader::readMessage(const std::uint8_t* from, std::uint8_t status,
                                                    std::uint64_t at)
{
    running = status;
    const std::ptrdiff_t count = dataLength(status);
    if (end - from < count) {
        return Outcome::notWhole;
    }
    const std::uint8_t data1 = from[0];
    const std::uint8_t data2 = count == 2 ? from[1] : 0;
    if (isStatus(data1) || isStatus(data2)) {
        ++report.damaged;
        return resume(isStatus(data1) ? from : from + 1, at);
    }
    advance(from + count, at);
    keepMessage(status, data1, data2);
    return Outcome::done;
}

// False where there is no more room for events.
bool SMFTrackReader::keep(const SMFEvent& event)
{
    constexpr std::size_t cost = sizeof(SMFEvent) + sizeof(MusicEvent);
    if (!budget.take(cost + event.recordWords() * sizeof(std::uint64_t))) {
        return false;
    }
    events.add(event);
    return true;
}

void SMFTrackReader::keepMessage(std::uint8_t status, std::uint8_t data1, std::uint8_t data2)
{
    lastTick = tick;
    const std::uint8_t kind = kindOf(status);
    if (kind == STATUS_NOTEON && data2 > 0) {
        if (keep({tick, 0, 0, SMFEventKind::note, status, data1, data2})) {
            openNotes.begin(events);
            ++report.notes;
        }
    } else if (kind == STATUS_NOTEOFF || kind == STATUS_NOTEON) {
        report.orphanOffs += openNotes.end(events, status, data1, tick, data2) ? 0U : 1U;
    } else {
        keep({tick, 0, 0, SMFEventKind::message, status, data1, data2});
    }
}

SMFTrackReader::Outcome SMFTrackReader::readSystem(const std::uint8_t* from, std::uint8_t status,
                                                   std::uint64_t at)
{
    switch (status) {
    case STATUS_FILE_META:
        return readMeta(from, at);
    case STATUS_SYSEX:
        return readExclusive(from, SMFEventKind::exclusive, at);
    case STATUS_EOX:
        return readExclusive(from, SMFEventKind::packet, at);
    default:
        return skipSystem(from, status, at);
    }
}

SMFTrackReader::Outcome SMFTrackReader::readMeta(const std::uint8_t* from, std::uint64_t at)
{
    if (from == end) {
        return Outcome::notWhole;
    }
    const std::uint8_t type = *from++;
    std::uint32_t length = 0;
    if (!readNumber(from, length) || static_cast<std::size_t>(end - from) < length) {
        return Outcome::notWhole;
    }
    const bool isFiller = length == 0 && at - tick == greatestNumber;
    advance(from + length, at);
    if (type == META_EOT) {
        track.end = tick;
        return Outcome::atEnd;
    }
    keepMeta(type, from, length, isFiller);
    return Outcome::done;
}

void SMFTrackReader::keepMeta(std::uint8_t type, const std::uint8_t* from, std::uint32_t length,
                              bool isFiller)
{
    if (type == META_SPECIFIC && isFiller) {
        return;
    }
    lastTick = tick;
    if (type == META_SETTEMPO) {
        keepTempo(from, length);
        return;
    }
    const auto place = static_cast<std::uint64_t>(from - file.data());
    keep({tick, place, length, SMFEventKind::meta, STATUS_FILE_META, type, 0});
}

void SMFTrackReader::keepTempo(const std::uint8_t* from, std::uint32_t length)
{
    std::uint64_t microseconds = 0;
    for (std::uint32_t i = 0; i < 3 && length >= 3; ++i) {
        microseconds = microseconds * 256 + from[i];
    }
    if (microseconds == 0) {
        ++report.badTempos;
        return;
    }
    keep({tick, microseconds, 0, SMFEventKind::tempo, STATUS_FILE_META, META_SETTEMPO, 0});
}

SMFTrackReader::Outcome SMFTrackReader::readExclusive(const std::uint8_t* from, SMFEventKind kind,
                                                      std::uint64_t at)
{
    std::uint32_t length = 0;
    if (!readNumber(from, length)) {
        return Outcome::notWhole;
    }
    if (static_cast<std::size_t>(end - from) < length) {
        const auto* const last = kind == SMFEventKind::exclusive ? std::find(from, end, STATUS_EOX) : end;
        if (last == end) {
            return Outcome::notWhole;
        }
        length = static_cast<std::uint32_t>(last - from) + 1;
        ++report.longNumbers;
    }
    advance(from + length, at);
    lastTick = tick;
    const auto place = static_cast<std::uint64_t>(from - file.data());
    keep({tick, place, length, kind, STATUS_SYSEX, 0, 0});
    return Outcome::done;
}

SMFTrackReader::Outcome SMFTrackReader::skipOrphans(const std::uint8_t* from, std::uint64_t at)
{
    ++report.damaged;
    const auto* const status = std::find_if(from, end, isStatus);
    return resume(status, at);
}

// Real-time and common messages do not belong into a file.
SMFTrackReader::Outcome SMFTrackReader::skipSystem(const std::uint8_t* from, std::uint8_t status,
                                                   std::uint64_t at)
{
    ++report.damaged;
    return advance(from + std::min<std::ptrdiff_t>(dataLength(status), end - from), at);
}

SMFTrackReader::Outcome SMFTrackReader::resume(const std::uint8_t* from, std::uint64_t at)
{
    advance(from, at);
    isResuming = true;
    return Outcome::done;
}

SMFTrackReader::Outcome SMFTrackReader::advance(const std::uint8_t* from, std::uint64_t at)
{
    position = from;
    tick = at;
    isResuming = false;
    return Outcome::done;
}

// False where the bytes end inside the number.
bool SMFTrackReader::readNumber(const std::uint8_t*& from, std::uint32_t& number)
{
    if (from < end && !isStatus(*from)) {
        number = *from++;
        return true;
    }
    std::uint64_t value = 0;
    while (from < end) {
        const std::uint8_t byte = *from++;
        value = std::min<std::uint64_t>((value << 7U) | (byte & 0x7FU), std::uint64_t{1} << 40U);
        if (!isStatus(byte)) {
            report.longNumbers += value > greatestNumber ? 1U : 0U;
            number = static_cast<std::uint32_t>(std::min<std::uint64_t>(value, greatestNumber));
            return true;
        }
    }
    return false;
}

} // namespace volvelle
