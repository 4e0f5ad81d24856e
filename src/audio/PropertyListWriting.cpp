#include "audio/PropertyList.h"
#include "base/Text.h"

#include <string_view>

namespace volvelle {

namespace {

constexpr int deepest = 200; // levels

// The length of the UTF-8 character at the start, 0 where there is none that XML may hold.
std::size_t characterLength(std::string_view rest)
{
    const auto byteAt = [rest](std::size_t i) {
        return i < rest.size() ? static_cast<std::uint8_t>(rest[i]) : 0U;
    };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        return first >= 0x20 || first == '\t' || first == '\n' || first == '\r' ? 1 : 0;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    unsigned code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80U) {
            return 0;
        }
        code = code << 6U | (byteAt(i) & 0x3FU);
    }
    constexpr unsigned least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isCharacter = first >= 0xC0 && first < 0xF8 && code >= least[length] && code <= 0x10FFFF &&
                             !(code >= 0xD800 && code <= 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
    return isCharacter ? length : 0;
}

std::string base64(const PropertyData& bytes)
{
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string result;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8U | (i + k < bytes.size() ? bytes[i + k] : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            result += i + k <= bytes.size() ? digits[group >> (18 - 6 * k) & 0x3FU] : '=';
        }
    }
    return result;
}

class Writer {
public:
    std::string output;
    std::string error;

    void dictionary(const PropertyDictionary& list)
    {
        open("dict");
        for (const auto& [key, value] : list) {
            element("key", key);
            write(value);
        }
        close("dict");
    }

private:
    int level = 0;

    void write(const PropertyValue& value)
    {
        std::visit([this](const auto& held) { put(held); }, value.value);
    }

    void put(bool value) { line(value ? "<true/>" : "<false/>"); }

    void put(std::int64_t value) { line(concat("<integer>", value, "</integer>")); }

    void put(double value) { line(concat("<real>", value, "</real>")); }

    void put(const std::string& value) { element("string", value); }

    void put(const PropertyData& value) { line(concat("<data>", base64(value), "</data>")); }

    void put(const PropertyArray& value)
    {
        open("array");
        for (const PropertyValue& item : value) {
            write(item);
        }
        close("array");
    }

    void put(const PropertyDictionary& value) { dictionary(value); }

    void open(std::string_view tag)
    {
        line(concat("<", tag, ">"));
        if (++level > deepest) {
            fail("The values are nested too deeply.");
        }
    }

    void close(std::string_view tag)
    {
        --level;
        line(concat("</", tag, ">"));
    }

    void element(std::string_view tag, std::string_view content)
    {
        line(concat("<", tag, ">", escaped(content), "</", tag, ">"));
    }

    std::string escaped(std::string_view content)
    {
        std::string result;
        for (std::size_t i = 0; i < content.size();) {
            const std::size_t length = characterLength(content.substr(i));
            if (length == 0) {
                fail("A text holds a character that XML does not know.");
                return {};
            }
            result += length > 1 ? std::string(content.substr(i, length)) : escaped(content[i]);
            i += length;
        }
        return result;
    }

    static std::string escaped(char character)
    {
        switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '\r':
            return "&#13;";
        default:
            return {character};
        }
    }

    void line(std::string_view content)
    {
        if (error.empty()) {
            output.append(static_cast<std::size_t>(level), '\t').append(content) += '\n';
        }
    }

    void fail(std::string_view reason)
    {
        if (error.empty()) {
            error = reason;
        }
    }
};

} // namespace

Result<std::vector<std::uint8_t>> propertyListData(const PropertyDictionary& list)
{
    Writer writer;
    writer.output = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
    writer.dictionary(list);
    writer.output += "</plist>\n";
    if (!writer.error.empty()) {
        return failure(writer.error);
    }
    return std::vector<std::uint8_t>(writer.output.begin(), writer.output.end());
}

} // namespace volvelle
