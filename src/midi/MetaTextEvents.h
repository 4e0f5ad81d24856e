#pragma once

#include "midi/MetaEvent.h"

// The meta events that hold a text. They differ by class and type only.
namespace volvelle {

// What they share.
class MetaTextFamilyEvent : public MetaEvent {
public:
    // The payload with each byte as one character: a text with a character beyond ASCII does not come back as
    // it went in.
    std::string getText() const;

    // Makes the UTF-8 bytes of the text the payload.
    void setText(std::string_view text);

protected:
    explicit MetaTextFamilyEvent(std::uint8_t type) : MetaEvent(type, 0, 0.0) {}

    MetaTextFamilyEvent(std::uint8_t type, double position, std::string_view text);
};

class MetaTextEvent : public MetaTextFamilyEvent {
public:
    MetaTextEvent() : MetaTextFamilyEvent(META_TEXT) {}

    MetaTextEvent(double position, std::string_view text) : MetaTextFamilyEvent(META_TEXT, position, text) {}

    std::string_view className() const override { return "MetaTextEvent"; }
};

class MetaCopyrightEvent : public MetaTextFamilyEvent {
public:
    MetaCopyrightEvent() : MetaTextFamilyEvent(META_COPYRIGHT) {}

    MetaCopyrightEvent(double position, std::string_view text)
        : MetaTextFamilyEvent(META_COPYRIGHT, position, text)
    {
    }

    std::string_view className() const override { return "MetaCopyrightEvent"; }
};

class MetaTrackNameEvent : public MetaTextFamilyEvent {
public:
    MetaTrackNameEvent() : MetaTextFamilyEvent(META_TRACKNAME) {}

    MetaTrackNameEvent(double position, std::string_view text)
        : MetaTextFamilyEvent(META_TRACKNAME, position, text)
    {
    }

    std::string_view className() const override { return "MetaTrackNameEvent"; }
};

class MetaInstrumentNameEvent : public MetaTextFamilyEvent {
public:
    MetaInstrumentNameEvent() : MetaTextFamilyEvent(META_INSTRUMENTNAME) {}

    MetaInstrumentNameEvent(double position, std::string_view text)
        : MetaTextFamilyEvent(META_INSTRUMENTNAME, position, text)
    {
    }

    std::string_view className() const override { return "MetaInstrumentNameEvent"; }
};

class MetaLyricsEvent : public MetaTextFamilyEvent {
public:
    MetaLyricsEvent() : MetaTextFamilyEvent(META_LYRICS) {}

    MetaLyricsEvent(double position, std::string_view text) : MetaTextFamilyEvent(META_LYRICS, position, text)
    {
    }

    std::string_view className() const override { return "MetaLyricsEvent"; }
};

class MetaMarkerEvent : public MetaTextFamilyEvent {
public:
    MetaMarkerEvent() : MetaTextFamilyEvent(META_MARKER) {}

    MetaMarkerEvent(double position, std::string_view text) : MetaTextFamilyEvent(META_MARKER, position, text)
    {
    }

    std::string_view className() const override { return "MetaMarkerEvent"; }
};

class MetaCuePointEvent : public MetaTextFamilyEvent {
public:
    MetaCuePointEvent() : MetaTextFamilyEvent(META_CUEPOINT) {}

    MetaCuePointEvent(double position, std::string_view text)
        : MetaTextFamilyEvent(META_CUEPOINT, position, text)
    {
    }

    std::string_view className() const override { return "MetaCuePointEvent"; }
};

class MetaProgramNameEvent : public MetaTextFamilyEvent {
public:
    MetaProgramNameEvent() : MetaTextFamilyEvent(META_PROGRAMNAME) {}

    MetaProgramNameEvent(double position, std::string_view text)
        : MetaTextFamilyEvent(META_PROGRAMNAME, position, text)
    {
    }

    std::string_view className() const override { return "MetaProgramNameEvent"; }
};

class MetaDeviceNameEvent : public MetaTextFamilyEvent {
public:
    MetaDeviceNameEvent() : MetaTextFamilyEvent(META_DEVICENAME) {}

    MetaDeviceNameEvent(double position, std::string_view text)
        : MetaTextFamilyEvent(META_DEVICENAME, position, text)
    {
    }

    std::string_view className() const override { return "MetaDeviceNameEvent"; }
};

} // namespace volvelle
