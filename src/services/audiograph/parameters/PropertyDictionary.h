#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace volvelle {

struct PropertyValue;

// A tree of plain values, as a property list holds them.
using PropertyDictionary = std::map<std::string, PropertyValue>;
using PropertyArray = std::vector<PropertyValue>;
using PropertyData = std::vector<std::uint8_t>;

struct PropertyValue {
    using Value = std::variant<bool, std::int64_t, double, std::string, PropertyData, PropertyArray,
                               PropertyDictionary>;

    Value value;

    // The value as a `T` of the list above, null where it is of another kind.
    template <typename T>
    const T* as() const
    {
        return std::get_if<T>(&value);
    }

    bool operator==(const PropertyValue&) const = default;
};

} // namespace volvelle
