#pragma once

#include "sequence/SequenceReadingReport.h"

#include <source_location>
#include <string_view>

namespace volvelle {

// What the reading of a grid says. For the sources of this folder.
class PatternReadingReport : public SequenceReadingReport {
public:
    using SequenceReadingReport::SequenceReadingReport;

    std::string_view title() const override { return "Pattern"; }

    MusicTrack tempoTrack() override;
    void countFailed(OSStatus status) override;
    void tooManyTracks(std::uint32_t count) override;
    void tempoTrackFollows() override;
    void trackFollows(std::uint32_t index) override;

private:
    void reportFailure(OSStatus status, std::string_view text,
                       std::source_location place = std::source_location::current());
};

} // namespace volvelle
