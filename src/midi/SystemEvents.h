#pragma once

#include "midi/EventNode.h"
#include "midi/MIDIConstants.h"

// The system common and system realtime events. Their channel is 0.
namespace volvelle {

class SystemTimeCodeEvent : public EventNode {
public:
    SystemTimeCodeEvent() : EventNode(STATUS_TIMECODE, 0.0, 0) {}

    SystemTimeCodeEvent(double position, std::uint8_t value)
        : EventNode(STATUS_TIMECODE, position, 0), value(value)
    {
    }

    std::uint8_t value = 0;

    std::string_view className() const override { return "SystemTimeCodeEvent"; }
};

class SystemSongPositionPointerEvent : public EventNode {
public:
    SystemSongPositionPointerEvent() : EventNode(STATUS_SONGPOSITION, 0.0, 0) {}

    SystemSongPositionPointerEvent(double position, std::uint8_t msb, std::uint8_t lsb)
        : EventNode(STATUS_SONGPOSITION, position, 0), msb(msb), lsb(lsb)
    {
    }

    std::uint8_t msb = 0;
    std::uint8_t lsb = 0;

    std::string_view className() const override { return "SystemSongPositionPointerEvent"; }
};

class SystemSongSelectEvent : public EventNode {
public:
    SystemSongSelectEvent() : EventNode(STATUS_SONGSELECT, 0.0, 0) {}

    SystemSongSelectEvent(double position, std::uint8_t value)
        : EventNode(STATUS_SONGSELECT, position, 0), value(value)
    {
    }

    std::uint8_t value = 0;

    std::string_view className() const override { return "SystemSongSelectEvent"; }
};

class SystemTuneRequestEvent : public EventNode {
public:
    SystemTuneRequestEvent() : EventNode(STATUS_TUNEREQUEST, 0.0, 0) {}

    explicit SystemTuneRequestEvent(double position) : EventNode(STATUS_TUNEREQUEST, position, 0) {}

    std::string_view className() const override { return "SystemTuneRequestEvent"; }
};

class SystemClockEvent : public EventNode {
public:
    SystemClockEvent() : EventNode(STATUS_TIMINGCLOCK, 0.0, 0) {}

    explicit SystemClockEvent(double position) : EventNode(STATUS_TIMINGCLOCK, position, 0) {}

    std::string_view className() const override { return "SystemClockEvent"; }
};

class SystemStartEvent : public EventNode {
public:
    SystemStartEvent() : EventNode(STATUS_START, 0.0, 0) {}

    explicit SystemStartEvent(double position) : EventNode(STATUS_START, position, 0) {}

    std::string_view className() const override { return "SystemStartEvent"; }
};

class SystemContinueEvent : public EventNode {
public:
    SystemContinueEvent() : EventNode(STATUS_CONTINUE, 0.0, 0) {}

    explicit SystemContinueEvent(double position) : EventNode(STATUS_CONTINUE, position, 0) {}

    std::string_view className() const override { return "SystemContinueEvent"; }
};

class SystemStopEvent : public EventNode {
public:
    SystemStopEvent() : EventNode(STATUS_STOP, 0.0, 0) {}

    explicit SystemStopEvent(double position) : EventNode(STATUS_STOP, position, 0) {}

    std::string_view className() const override { return "SystemStopEvent"; }
};

class SystemActiveSensingEvent : public EventNode {
public:
    SystemActiveSensingEvent() : EventNode(STATUS_ACTIVESENSING, 0.0, 0) {}

    explicit SystemActiveSensingEvent(double position) : EventNode(STATUS_ACTIVESENSING, position, 0) {}

    std::string_view className() const override { return "SystemActiveSensingEvent"; }
};

class SystemResetEvent : public EventNode {
public:
    SystemResetEvent() : EventNode(STATUS_RESET, 0.0, 0) {}

    explicit SystemResetEvent(double position) : EventNode(STATUS_RESET, position, 0) {}

    std::string_view className() const override { return "SystemResetEvent"; }
};

} // namespace volvelle
