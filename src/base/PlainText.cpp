#include "base/PlainText.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cwchar>
#include <cwctype>

#include <locale.h>

namespace volvelle {

namespace {

std::uint8_t byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<std::uint8_t>(bytes[at]);
}

std::size_t lengthFromLead(std::uint8_t lead)
{
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// The number of bytes of the UTF-8 character at a place, 0 where there is none.
std::size_t characterLength(std::string_view bytes, std::size_t at)
{
    const std::uint8_t lead = byteAt(bytes, at);
    const std::size_t length = lengthFromLead(lead);
    if (length == 0 || at + length > bytes.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(bytes, at + i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    const std::uint8_t next = length > 1 ? byteAt(bytes, at + 1) : 0;
    const bool isOverlong = (lead == 0xE0 && next < 0xA0) || (lead == 0xF0 && next < 0x90);
    const bool isBeyond = (lead == 0xED && next > 0x9F) || (lead == 0xF4 && next > 0x8F);
    return isOverlong || isBeyond ? 0 : length;
}

bool isControl(std::string_view text, std::size_t at)
{
    const std::uint8_t lead = byteAt(text, at);
    return (lead < 0x20 && lead != '\n' && lead != '\t') || lead == 0x7F ||
           (lead == 0xC2 && byteAt(text, at + 1) < 0xA0);
}

bool isSeparator(char32_t point)
{
    return point == 0x2028 || point == 0x2029;
}

// What turns the direction of what follows.
bool isTurn(char32_t point)
{
    return point == 0x061C || point == 0x200E || point == 0x200F || (point >= 0x202A && point <= 0x202E) ||
           (point >= 0x2066 && point <= 0x2069);
}

} // namespace

char32_t codePointOf(std::string_view character)
{
    const auto lead = static_cast<std::uint8_t>(character.front());
    char32_t point = character.size() == 1 ? lead : lead & (0x7FU >> character.size());
    for (const char next : character.substr(1)) {
        point = point << 6U | (static_cast<std::uint8_t>(next) & 0x3FU);
    }
    return point;
}

std::size_t utf8Length(std::string_view bytes)
{
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t length = characterLength(bytes, at);
        if (length == 0) {
            break;
        }
        at += length;
    }
    return at;
}

std::string utf8Text(std::string_view bytes)
{
    return utf8Length(bytes) == bytes.size() ? std::string(bytes) : latinText({bytes.begin(), bytes.end()});
}

std::string plainText(std::string_view text)
{
    const std::string whole = utf8Text(text);
    std::string plain;
    plain.reserve(whole.size());
    for (std::size_t at = 0; at < whole.size();) {
        const std::size_t length = characterLength(whole, at);
        const std::string_view character = std::string_view(whole).substr(at, length);
        const char32_t point = codePointOf(character);
        const bool isHidden = isControl(whole, at) || isTurn(point);
        plain += isHidden ? "?" : isSeparator(point) ? "\n" : character;
        at += length;
    }
    return plain;
}

std::string plainLine(std::string_view text)
{
    std::string plain = plainText(text);
    std::ranges::replace_if(plain, [](char c) { return c == '\n' || c == '\t'; }, ' ');
    return plain;
}

std::string smallLetters(std::string_view text)
{
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = uselocale(utf8);
    std::string result;
    std::mbstate_t in{};
    std::mbstate_t out{};
    while (!text.empty()) {
        wchar_t letter = 0;
        std::array<char, MB_LEN_MAX> bytes{};
        const std::size_t taken = std::mbrtowc(&letter, text.data(), text.size(), &in);
        if (taken == 0 || taken > text.size()) {
            in = {};
            result += text.front();
            text.remove_prefix(1);
            continue;
        }
        const auto small = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter)));
        result.append(bytes.data(), std::wcrtomb(bytes.data(), small, &out));
        text.remove_prefix(taken);
    }
    uselocale(before);
    return result;
}

} // namespace volvelle
