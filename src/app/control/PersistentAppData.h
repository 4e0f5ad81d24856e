#pragma once

#include "app/circle/CGRect.h"
#include "services/settings/NSUserDefaults.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace volvelle {

// The name of the settings that the maker's applications share.
inline const std::string sharedContainer = "group.com.orvane.audio";

// The settings of the application, those that the maker's applications share, and a view of both. A key that
// is missing gives no value, 0 or false. [any] Several threads at once.
class PersistentAppData {
public:
    enum class Storage { defaults = 0, shared = 1, combined = 2 };

    // No value for any other number.
    static std::optional<Storage> storage(int rawValue);

    // The one object, made at first use; shared settings that cannot be made are a fatal stop then.
    static PersistentAppData& sharedInstance();

    PersistentAppData();
    virtual ~PersistentAppData() = default;
    PersistentAppData(const PersistentAppData&) = delete;
    PersistentAppData& operator=(const PersistentAppData&) = delete;

private:
    const std::shared_ptr<NSUserDefaults> defaults;
    const std::shared_ptr<NSUserDefaults> shared;
    const std::shared_ptr<NSUserDefaults> combined;

public:
    virtual void setString(const std::string& key, const std::string& value,
                           Storage _for = Storage::defaults);
    virtual std::optional<std::string> getString(const std::string& key, Storage from = Storage::defaults);
    virtual void setInteger(const std::string& key, std::int64_t value, Storage _for = Storage::defaults);
    virtual std::int64_t getInteger(const std::string& key, Storage from = Storage::defaults);
    virtual void setFloat(const std::string& key, float value, Storage _for = Storage::defaults);
    virtual float getFloat(const std::string& key, Storage from = Storage::defaults);
    virtual void setBool(const std::string& key, bool value, Storage _for = Storage::defaults);
    virtual bool getBool(const std::string& key, Storage from = Storage::defaults);

    // No value removes the key.
    virtual void setURL(const std::string& key, std::optional<SettingsURL> value,
                        Storage _for = Storage::defaults);
    virtual std::optional<SettingsURL> getUrl(const std::string& key, Storage from = Storage::defaults);
    virtual void setObject(const std::string& key, std::optional<SettingsValue> value,
                           Storage _for = Storage::defaults);
    virtual std::optional<SettingsValue> getObject(const std::string& key, Storage from = Storage::defaults);

    // Prints all entries of the three.
    virtual void dumpout();

    // A frame as "left", "top", "width" and "height", and the frame that is stored so: what it lacks is 0, 0,
    // 100 and 100. No value where nothing is stored, or something else.
    static SettingsFrame frameToDictionary(const CGRect& frame);
    static std::optional<CGRect> dictionaryToFrame(const std::string& key);

private:
    NSUserDefaults& of(Storage storage) const;
};

} // namespace volvelle
