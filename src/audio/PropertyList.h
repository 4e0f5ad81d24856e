#pragma once

#include "base/Result.h"
#include "services/audiograph/parameters/PropertyDictionary.h"

#include <cstdint>
#include <span>
#include <vector>

// Dictionaries as property lists in XML: dict, array, string, integer, real, true, false and data. Both ways
// refuse what is nested deeper than 200 levels. [any]
namespace volvelle {

inline constexpr int propertyListXMLFormat = 100;

// The bytes of the list, in UTF-8, with tabs and line ends; keys in their order. Fails for a text that XML
// cannot hold: one that is not UTF-8, or has control characters other than tab
// and line ends.
Result<std::vector<std::uint8_t>> propertyListData(const PropertyDictionary& list);

// The dictionary that the list holds; a date becomes its text. Of equal keys the last counts. Fails for
// anything that is not such a list.
Result<PropertyDictionary> propertyListFromData(std::span<const std::uint8_t> bytes);

} // namespace volvelle
