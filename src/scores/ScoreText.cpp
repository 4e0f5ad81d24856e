#include "scores/ScoreText.h"

#include "base/PlainText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace volvelle::scores {

namespace {

constexpr std::string_view blanks = " \t\r";

bool isBlank(char c)
{
    return blanks.find(c) != std::string_view::npos;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<ScoreLine> scoreLines(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    std::vector<ScoreLine> lines;
    for (int number = 1; !text.empty(); ++number) {
        const auto end = text.find('\n');
        const auto line = trimmed(text.substr(0, end));
        if (!line.empty() && line.front() != ';') {
            lines.push_back({number, line});
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

Result<> checkBytes(std::string_view text)
{
    const std::size_t good = utf8Length(text);
    if (good == text.size()) {
        return {};
    }
    std::array<char, 8> hex{};
    std::snprintf(hex.data(), hex.size(), "%02X", static_cast<unsigned char>(text[good]));
    return failure(atLine(lineCount(text.substr(0, good + 1))) + "the byte " + hex.data() +
                   " is no UTF-8: save the score as UTF-8");
}

int lineCount(std::string_view text)
{
    const bool isEnded = text.empty() || text.back() == '\n';
    return std::max(1, static_cast<int>(std::ranges::count(text, '\n')) + (isEnded ? 0 : 1));
}

std::vector<std::string_view> scoreCells(std::string_view text)
{
    std::vector<std::string_view> cells;
    std::size_t at = 0;
    while (at < text.size()) {
        if (isBlank(text[at])) {
            ++at;
            continue;
        }
        const auto start = at;
        bool bracketed = false;
        for (; at < text.size() && (bracketed || !isBlank(text[at])); ++at) {
            if (text[at] == '[') {
                bracketed = true;
            }
            if (text[at] == ']') {
                bracketed = false;
            }
        }
        cells.push_back(text.substr(start, at - start));
    }
    return cells;
}

std::optional<std::vector<std::string_view>> scoreBars(std::string_view line)
{
    if (line.size() < 2 || line.front() != '|' || line.back() != '|') {
        return std::nullopt;
    }
    std::vector<std::string_view> bars;
    line.remove_prefix(1);
    while (!line.empty()) {
        const auto end = line.find('|');
        bars.push_back(trimmed(line.substr(0, end)));
        line.remove_prefix(end + 1);
    }
    return bars;
}

std::vector<std::string_view> characters(std::string_view text)
{
    const auto continues = [&text](std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    std::vector<std::string_view> result;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        while (continues(end)) {
            ++end;
        }
        result.push_back(text.substr(at, end - at));
        at = end;
    }
    return result;
}

std::optional<int> wholeNumber(std::string_view text, int least, int most)
{
    int value = 0;
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (status != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    if (value < least || value > most) {
        return std::nullopt;
    }
    return value;
}

std::string atLine(int line)
{
    return "line " + std::to_string(line) + ": ";
}

std::string atBar(int line, int bar)
{
    return "line " + std::to_string(line) + ", bar " + std::to_string(bar) + ": ";
}

std::string quoted(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

} // namespace volvelle::scores
