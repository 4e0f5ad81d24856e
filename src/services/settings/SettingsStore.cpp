#include "services/settings/SettingsStore.h"

#include "base/Text.h"

namespace volvelle {

namespace {

std::string asText(const SettingsFrame& frame)
{
    std::string result = "[";
    for (const auto& [key, value] : frame) {
        result += concat(result.size() == 1 ? "" : ", ", key, ": ", value);
    }
    return result + "]";
}

} // namespace

std::string text(const SettingsValue& value)
{
    return std::visit(
        [](const auto& held) -> std::string {
            using Held = std::remove_cvref_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, SettingsURL>) {
                return held.text;
            } else if constexpr (std::is_same_v<Held, SettingsFrame>) {
                return asText(held);
            } else if constexpr (std::is_same_v<Held, std::vector<std::uint8_t>>) {
                return concat(held.size(), " bytes");
            } else {
                return concat(held);
            }
        },
        value);
}

std::optional<SettingsValue> MemorySettingsStore::value(const std::string& key) const
{
    const std::lock_guard lock(mutex);
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

void MemorySettingsStore::setValue(const std::string& key, std::optional<SettingsValue> value)
{
    const std::lock_guard lock(mutex);
    if (value) {
        values.insert_or_assign(key, *std::move(value));
    } else {
        values.erase(key);
    }
}

std::map<std::string, SettingsValue> MemorySettingsStore::entries() const
{
    const std::lock_guard lock(mutex);
    return values;
}

} // namespace volvelle
