#pragma once

#include "app/circle/MIDICircleViewDelegate.h"

#include <cstdint>
#include <filesystem>
#include <stop_token>
#include <vector>

namespace volvelle {

// The circle of a file that is no document: its events, and its beats by the same rule as a document's that
// plays. What cannot be read has none, nor what was asked to stop before it was done. [any] One at a time.
class FileCircle : public MIDICircleViewDelegate {
public:
    explicit FileCircle(const std::filesystem::path& file, const std::stop_token& stop = {});
    explicit FileCircle(const std::vector<std::uint8_t>& data, const std::stop_token& stop = {});

    std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() override { return events; }

    double getBeatCount() override { return beats; }

    // -1 for a file that could not be read, or not to its end.
    int notes() const { return count; }

private:
    void load(const std::vector<std::uint8_t>& data, const std::stop_token& stop);

    std::vector<std::shared_ptr<AUMIDIEventEx>> events;
    double beats;
    int count = -1;
};

} // namespace volvelle
