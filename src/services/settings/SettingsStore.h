#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace volvelle {

// A location as a setting: the text of it.
struct SettingsURL {
    std::string text;

    bool operator==(const SettingsURL&) const = default;
};

using SettingsFrame = std::map<std::string, float>;

// A setting, which keeps its type on disk.
using SettingsValue = std::variant<std::string, std::int64_t, float, double, bool, SettingsURL, SettingsFrame,
                                   std::vector<std::uint8_t>>;

// A value as dumps write it: texts plain, a frame "[left: 5.0]", bytes as "4 bytes".
std::string text(const SettingsValue& value);

// A map from key to value that lasts. [any] Several threads at once.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    virtual std::optional<SettingsValue> value(const std::string& key) const = 0;

    // No value removes the key.
    virtual void setValue(const std::string& key, std::optional<SettingsValue> value) = 0;

    // All entries, in the order of their keys.
    virtual std::map<std::string, SettingsValue> entries() const = 0;
};

// A store that ends with the process. [any] Several threads at once.
class MemorySettingsStore : public SettingsStore {
public:
    std::optional<SettingsValue> value(const std::string& key) const override;
    void setValue(const std::string& key, std::optional<SettingsValue> value) override;

    std::map<std::string, SettingsValue> entries() const override;

private:
    mutable std::mutex mutex;
    std::map<std::string, SettingsValue> values; // guarded by mutex
};

} // namespace volvelle
