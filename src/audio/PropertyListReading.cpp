#include "audio/PropertyList.h"
#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <pugixml.hpp>
#include <string_view>

namespace volvelle {

namespace {

constexpr int deepest = 200; // levels
constexpr std::string_view blanks = " \t\r\n";

std::optional<PropertyData> fromBase64(std::string_view signs)
{
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (signs.size() % 4 != 0) {
        return std::nullopt;
    }
    for (int fill = 0; fill < 2 && signs.ends_with('='); ++fill) {
        signs.remove_suffix(1);
    }
    PropertyData result;
    unsigned group = 0; // its low `bits` bits are still to be written
    unsigned bits = 0;
    for (const char sign : signs) {
        const std::size_t digit = digits.find(sign);
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        group = (group << 6U | static_cast<unsigned>(digit)) & 0xFFFU;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            result.push_back(static_cast<std::uint8_t>(group >> bits));
        }
    }
    return result;
}

// What was read, or nothing with a reason.
class Reader {
public:
    std::string error;

    std::optional<PropertyDictionary> dictionary(const pugi::xml_node& node, int level)
    {
        PropertyDictionary result;
        std::optional<std::string> key;
        for (const pugi::xml_node& child : node.children()) {
            if (child.type() != pugi::node_element) {
                continue;
            }
            const bool isKey = std::string_view(child.name()) == "key";
            if (isKey == key.has_value()) {
                return fail(child, isKey ? "A key has no value" : "A value has no key");
            }
            if (isKey) {
                key = content(child);
                continue;
            }
            auto item = value(child, level + 1);
            if (!item) {
                return std::nullopt;
            }
            result.insert_or_assign(*key, std::move(*item));
            key.reset();
        }
        if (key) {
            return fail(node, "A key has no value");
        }
        return result;
    }

    std::nullopt_t fail(const pugi::xml_node& node, std::string_view reason)
    {
        if (error.empty()) {
            error = concat(reason, " (at byte ", node.offset_debug(), ").");
        }
        return std::nullopt;
    }

private:
    static std::string content(const pugi::xml_node& node)
    {
        std::string result;
        for (const pugi::xml_node& child : node.children()) {
            if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
                result += child.value();
            }
        }
        return result;
    }

    static bool holdsElements(const pugi::xml_node& node)
    {
        for (const pugi::xml_node& child : node.children()) {
            if (child.type() == pugi::node_element) {
                return true;
            }
        }
        return false;
    }

    std::optional<PropertyValue> value(const pugi::xml_node& node, int level)
    {
        const std::string_view name = node.name();
        if (level > deepest) {
            return fail(node, "The values are nested too deeply");
        }
        if (name == "dict") {
            return wrapped(dictionary(node, level));
        }
        if (name == "array") {
            return wrapped(array(node, level));
        }
        if (holdsElements(node)) {
            return fail(node, concat("The element '", name, "' holds others"));
        }
        return plainValue(node, name);
    }

    std::optional<PropertyValue> plainValue(const pugi::xml_node& node, std::string_view name)
    {
        if (name == "true" || name == "false") {
            return PropertyValue{name == "true"};
        }
        if (name == "string" || name == "date") {
            return PropertyValue{content(node)};
        }
        if (name == "integer") {
            return wrapped(number<std::int64_t>(node, "An integer is not a number of 64 bits"));
        }
        if (name == "real") {
            return wrapped(number<double>(node, "A real is not a number"));
        }
        if (name == "data") {
            return wrapped(data(node));
        }
        return fail(node, concat("The element '", name, "' is unknown"));
    }

    std::optional<PropertyArray> array(const pugi::xml_node& node, int level)
    {
        PropertyArray result;
        for (const pugi::xml_node& child : node.children()) {
            if (child.type() != pugi::node_element) {
                continue;
            }
            auto item = value(child, level + 1);
            if (!item) {
                return std::nullopt;
            }
            result.push_back(std::move(*item));
        }
        return result;
    }

    template <typename Number>
    std::optional<Number> number(const pugi::xml_node& node, std::string_view reason)
    {
        const std::string whole = content(node);
        std::string_view digits = whole;
        digits.remove_prefix(std::min(digits.find_first_not_of(blanks), digits.size()));
        digits = digits.substr(0, digits.find_last_not_of(blanks) + 1);
        if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') {
            digits.remove_prefix(1);
        }
        Number result{};
        const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), result);
        if (digits.empty() || failure != std::errc{} || end != digits.data() + digits.size()) {
            return fail(node, reason);
        }
        return result;
    }

    std::optional<PropertyData> data(const pugi::xml_node& node)
    {
        std::string signs = content(node);
        std::erase_if(signs, [](char sign) { return blanks.find(sign) != std::string_view::npos; });
        auto result = fromBase64(signs);
        if (!result) {
            return fail(node, "Data are not in base 64");
        }
        return result;
    }

    template <typename T>
    static std::optional<PropertyValue> wrapped(std::optional<T> read)
    {
        std::optional<PropertyValue> result;
        if (read) {
            result.emplace().value.template emplace<T>(std::move(*read));
        }
        return result;
    }
};

} // namespace

Result<PropertyDictionary> propertyListFromData(std::span<const std::uint8_t> bytes)
{
    pugi::xml_document document;
    const auto parsed =
        document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default | pugi::parse_ws_pcdata);
    if (!parsed) {
        return failure(concat(parsed.description(), " (at byte ", parsed.offset, ")."));
    }
    const pugi::xml_node list = document.child("plist").find_child(
        [](const pugi::xml_node& child) { return child.type() == pugi::node_element; });
    Reader reader;
    if (std::string_view(list.name()) != "dict") {
        return failure("The file holds no property list with a dictionary.");
    }
    auto result = reader.dictionary(list, 1);
    return result ? Result<PropertyDictionary>(*std::move(result)) : failure(reader.error);
}

} // namespace volvelle
