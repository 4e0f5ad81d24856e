#include "services/audiodevice/LibraryLines.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace volvelle {

namespace {

// True where this thread wrote a line of the library last, whose end comes by itself.
thread_local bool isInLine = false;

bool isOfLibrary(std::string_view text)
{
    constexpr std::array<std::string_view, 5> beginnings{"\nRtA", "RtA", "MidiOut", "MidiIn", "\nMidiIn"};
    return std::ranges::any_of(beginnings,
                               [text](std::string_view start) { return text.starts_with(start); });
}

} // namespace

LibraryLines::LibraryLines(std::ostream& stream) : stream(stream), behind(stream.rdbuf(this)) {}

LibraryLines::~LibraryLines()
{
    if (stream.rdbuf() == this) {
        stream.rdbuf(behind);
    }
}

std::streamsize LibraryLines::xsputn(const char* text, std::streamsize count)
{
    const std::string_view all(text, static_cast<std::size_t>(count));
    const bool isEnd =
        std::exchange(isInLine, isOfLibrary(all)) && all.find_first_not_of('\n') == std::string_view::npos;
    return isInLine || isEnd ? count : behind->sputn(text, count);
}

LibraryLines::int_type LibraryLines::overflow(int_type character)
{
    const char letter = traits_type::to_char_type(character);
    return xsputn(&letter, 1) == 1 ? traits_type::not_eof(character) : traits_type::eof();
}

int LibraryLines::sync()
{
    return behind->pubsync();
}

} // namespace volvelle
