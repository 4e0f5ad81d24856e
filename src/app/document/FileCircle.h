#pragma once

#include "app/circle/MIDICircleViewDelegate.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace volvelle {

// The circle of a file that is no document: its events, and its beats by the same rule as a document's that
// plays. What cannot be read has none. [any] One at a time.
class FileCircle : public MIDICircleViewDelegate {
public:
    explicit FileCircle(const std::filesystem::path& file);
    explicit FileCircle(const std::vector<std::uint8_t>& data);

    std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() override { return events; }

    double getBeatCount() override { return beats; }

    // -1 for a file that could not be read.
    int notes() const { return count; }

private:
    void load(const std::vector<std::uint8_t>& data);

    std::vector<std::shared_ptr<AUMIDIEventEx>> events;
    double beats;
    int count = -1;
};

} // namespace volvelle
