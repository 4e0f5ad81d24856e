#pragma once

#include "services/settings/SettingsStore.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace volvelle {

// Settings by key: the application's own, those of a suite that several applications share, or a view of
// both, which reads its own first and writes its own. A number is given as any other number and as a truth
// value, and the other way round; a text that begins with a number counts as that, and "yes", "y", "true" and
// "t" in any case of letters as true. [any] Several threads at once.
class NSUserDefaults {
public:
    // Makes the store of a name, "" for the application's own; null where there can be none.
    using StoreMaker = std::function<std::shared_ptr<SettingsStore>(const std::string& name)>;

    // Where the stores come from; without one they end with the process. Stores made before stay. [main] At
    // start, before the settings are used.
    static void setStoreMaker(StoreMaker maker);

    // The application's own; one that cannot be made is a fatal stop.
    static std::shared_ptr<NSUserDefaults> standardUserDefaults();

    // A suite's, null where it cannot be made.
    static std::shared_ptr<NSUserDefaults> makeWithSuiteName(const std::string& name);

    explicit NSUserDefaults(std::shared_ptr<SettingsStore> store);

    // From now on what the own store lacks is looked for in the suite. One that cannot be made adds nothing.
    void addSuiteNamed(const std::string& name);

    // 0, false or no value for a key that is missing or holds something else.
    std::optional<std::string> stringForKey(const std::string& key) const;
    std::int64_t integerForKey(const std::string& key) const;
    float floatForKey(const std::string& key) const;
    bool boolForKey(const std::string& key) const;
    std::optional<SettingsURL> URLForKey(const std::string& key) const;
    std::optional<SettingsValue> objectForKey(const std::string& key) const;

    // All write to the own store; no value removes the key there.
    void setValueForKey(const std::string& key, std::optional<SettingsValue> value);
    void setIntegerForKey(const std::string& key, std::int64_t value);
    void setFloatForKey(const std::string& key, float value);
    void setBoolForKey(const std::string& key, bool value);
    void setURLForKey(const std::string& key, std::optional<SettingsURL> value);
    void setObjectForKey(const std::string& key, std::optional<SettingsValue> value);

    // Of all stores that are read, the own values first.
    std::map<std::string, SettingsValue> dictionaryRepresentation() const;

private:
    std::shared_ptr<SettingsStore> own;
    std::vector<std::shared_ptr<SettingsStore>> suites;
};

} // namespace volvelle
