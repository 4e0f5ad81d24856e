#pragma once

#include "base/Clock.h"
#include "base/Timer.h"
#include "cli/sound/RecordTake.h"
#include "cli/sound/TerminalKeys.h"
#include "cli/sound/TerminalLine.h"
#include "services/audiodevice/MIDIPorts.h"

#include <memory>
#include <optional>
#include <string>

namespace volvelle {

// One recording from a MIDI port: until the user ends it, its time is over, or the port is lost. On a
// terminal a line tells what comes. Made by make(). [main]
class RecordSession : public std::enable_shared_from_this<RecordSession> {
public:
    // The clock is that of the main run loop, and lives as long; it counts as the moments of what comes in.
    // `seconds` is how long it takes at most.
    static std::shared_ptr<RecordSession> make(const Clock& clock, std::optional<double> seconds,
                                               bool showsLine);

    // Opens the port and begins.
    Result<> open(MIDIPorts& ports, const std::string& name);

    // Runs the main run loop until the recording is over.
    void run();

    const std::string& portName() const { return port; }

    double length() const { return seconds; } // seconds, once it is over

    bool isOver() const { return timer == nullptr; }

    bool isPortLost() const { return isLost; }

    RecordTake take;

private:
    using Moment = RecordTake::Moment;

    RecordSession(const Clock& clock, std::optional<double> seconds, bool showsLine);

    void look();
    bool isEndWanted();
    bool hasLostPort(Moment now);
    void end(Moment at);
    Moment now() const;
    double secondsUntil(Moment moment) const;

    const Clock& clock;
    const std::optional<double> longest; // seconds
    const bool showsLine;
    TerminalLine line;
    TerminalKeys keys;
    std::unique_ptr<MIDIInput> input;
    std::string port;
    std::shared_ptr<Timer> timer;
    Moment start;
    Moment latest = Moment::max(); // the end of its time
    Moment nextQuestion;           // when the port is asked again whether it is lost
    double seconds = 0.0;
    bool isLost = false;
};

} // namespace volvelle
