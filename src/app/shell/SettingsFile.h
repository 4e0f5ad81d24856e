#pragma once

#include "services/settings/SettingsStore.h"

#include <QSettings>

#include <mutex>

namespace volvelle {

// A store of settings in a file of the user's configuration, which several processes may use. Values keep
// their types. [any] Several threads at once.
class SettingsFile : public SettingsStore {
public:
    // `name` is the file's, without its ending.
    explicit SettingsFile(const std::string& name);

    std::optional<SettingsValue> value(const std::string& key) const override;
    void setValue(const std::string& key, std::optional<SettingsValue> value) override;
    std::map<std::string, SettingsValue> entries() const override;

    bool isWritable() const { return settings.isWritable(); }

private:
    mutable std::recursive_mutex mutex;
    QSettings settings; // guarded by mutex
};

// The application's own settings for "", which last as long as the process where they cannot be written; else
// those of a suite, null where they cannot.
std::shared_ptr<SettingsStore> openSettings(const std::string& name);

} // namespace volvelle
