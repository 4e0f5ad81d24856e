#pragma once

#include "services/musicsequence/smf/SMFBudget.h"
#include "services/musicsequence/smf/SMFEvents.h"
#include "services/musicsequence/smf/SMFOpenNotes.h"
#include "services/musicsequence/smf/SMFTrack.h"
#include "services/musicsequence/smf/SMFTrackReport.h"

#include <cstdint>
#include <span>

namespace volvelle {

// Reads the events of one file track, and mends what is wrong with them. It can be asked to go on after a
// limit at which it stopped. Where its budget is spent it stops for good.
class SMFTrackReader {
public:
    // Begins at `from`, and adds to `events`; `notes` holds no open note.
    SMFTrackReader(std::span<const std::uint8_t> file, std::size_t from, SMFEvents& events,
                   SMFOpenNotes& notes, SMFBudget& budget);

    // Reads up to `limit`; true once the end of the track was met.
    bool read(std::size_t limit);

    // Where the reading stands: past the end of the track, or on the first event that is not whole.
    std::size_t place() const { return static_cast<std::size_t>(position - file.data()); }

    // Closes the open notes and hands the track over.
    SMFTrack finish();

    SMFTrack track;
    SMFTrackReport report;

private:
    enum class Outcome { done, atEnd, notWhole };

    Outcome readEvent();
    Outcome readMessage(const std::uint8_t* from, std::uint8_t status, std::uint64_t at);
    Outcome readSystem(const std::uint8_t* from, std::uint8_t status, std::uint64_t at);
    Outcome readMeta(const std::uint8_t* from, std::uint64_t at);
    Outcome readExclusive(const std::uint8_t* from, SMFEventKind kind, std::uint64_t at);
    Outcome skipOrphans(const std::uint8_t* from, std::uint64_t at);
    Outcome skipSystem(const std::uint8_t* from, std::uint8_t status, std::uint64_t at);
    Outcome resume(const std::uint8_t* from, std::uint64_t at);
    Outcome advance(const std::uint8_t* from, std::uint64_t at);
    bool keep(const SMFEvent& event);
    void keepMessage(std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    void keepMeta(std::uint8_t type, const std::uint8_t* from, std::uint32_t length, bool isFiller);
    void keepTempo(const std::uint8_t* from, std::uint32_t length);
    bool readNumber(const std::uint8_t*& from, std::uint32_t& number);

    std::span<const std::uint8_t> file;
    const std::uint8_t* position;
    const std::uint8_t* end;
    SMFEvents& events;
    SMFOpenNotes& openNotes;
    SMFBudget& budget;
    std::uint64_t tick = 0;
    std::uint64_t lastTick = 0; // of an event, ends of notes included
    std::uint8_t running = 0;
    bool isResuming = false; // on a status whose delta time was read
};

} // namespace volvelle
