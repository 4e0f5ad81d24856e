#pragma once

#include "services/settings/SettingsStore.h"

#include <QSettings>

#include <mutex>

namespace volvelle {

// A store of settings in a file of the user's configuration, which several processes may use. Values keep
// their types, and texts their bytes; what was written by hand is text. A file that is not in UTF-8 is kept
// beside it, as "NAME.kept.ini", before it is first written; where it cannot be, nothing is written. [any]
// Several threads at once.
class SettingsFile : public SettingsStore {
public:
    // `name` is the file's, without its ending.
    explicit SettingsFile(const std::string& name);

    std::optional<SettingsValue> value(const std::string& key) const override;
    void setValue(const std::string& key, std::optional<SettingsValue> value) override;
    std::map<std::string, SettingsValue> entries() const override;

    bool isWritable() const { return settings.isWritable(); }

private:
    bool keepOther(); // false where the file has to stay as it is

    mutable std::recursive_mutex mutex;
    QSettings settings;  // guarded by mutex, as the next
    bool isKept = false; // what the file held that is no UTF-8, or there was nothing of that kind
};

// The application's own settings for "", which last as long as the process where they cannot be written; else
// those of a suite, null where they cannot.
std::shared_ptr<SettingsStore> openSettings(const std::string& name);

} // namespace volvelle
