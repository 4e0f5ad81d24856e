#include "cli/ArrangementReport.h"

#include "base/Text.h"

#include <algorithm>

namespace volvelle {

namespace {

std::string padded(std::string text, std::size_t width)
{
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string rightAligned(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

} // namespace

void printReport(CommandOutput& output, const std::vector<ArrangementSummary>& arrangements)
{
    constexpr std::size_t labelWidth = 22;
    std::array<int, channelCount> notes{};
    output.remark("Phrases");
    for (const auto& arrangement : arrangements) {
        for (const auto& phrase : arrangement.phrases) {
            output.remark(concat("  ", padded(phrase.label, labelWidth), phrase.title));
        }
        for (std::size_t channel = 0; channel < notes.size(); ++channel) {
            notes.at(channel) += arrangement.notes.at(channel);
        }
    }
    output.remark("Chords");
    double offset = 0.0;
    for (const auto& arrangement : arrangements) {
        for (const auto& chord : arrangement.chords) {
            output.remark(concat(rightAligned(text(chord.position + offset), 8), "  ", chord.name));
        }
        offset += arrangementBeats;
    }
    output.remark("Notes");
    for (int channel = 0; channel < channelCount; ++channel) {
        if (const int count = notes.at(static_cast<std::size_t>(channel)); count > 0) {
            output.remark(
                concat("  ", padded(channelLabel(channel), labelWidth), rightAligned(text(count), 5)));
        }
    }
}

std::string shortReport(const ArrangementSummary& arrangement)
{
    std::string line;
    for (const auto& phrase : arrangement.phrases) {
        line += concat(line.empty() ? "" : ", ", phrase.title);
    }
    line += ":";
    for (const auto& chord : arrangement.chords) {
        line += " " + chord.name;
    }
    return line;
}

void tellUnread(const ArrangementSummary& arrangement, std::set<std::filesystem::path>& told,
                CommandOutput& output)
{
    for (const auto& phrase : arrangement.phrases) {
        if (phrase.status != noErr && told.insert(phrase.file).second) {
            output.failure(
                concat(readFailure(phrase.file, phrase.status), " ", phrase.label, " stays empty."));
        }
    }
}

} // namespace volvelle
