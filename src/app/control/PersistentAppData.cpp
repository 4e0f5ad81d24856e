#include "app/control/PersistentAppData.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <utility>

namespace volvelle {

namespace {

// A view of its own, so that the application's settings stay without the others.
std::shared_ptr<NSUserDefaults> combinedDefaults()
{
    auto defaults = NSUserDefaults::standardUserDefaults();
    defaults->addSuiteNamed(sharedContainer);
    return defaults;
}

std::shared_ptr<NSUserDefaults> sharedDefaults()
{
    auto defaults = NSUserDefaults::makeWithSuiteName(sharedContainer);
    required(defaults);
    return defaults;
}

void dump(std::string_view name, const NSUserDefaults& defaults)
{
    directPrint("PersistentAppData::dumpout() : UserDefaults.", name, " : ");
    for (const auto& [key, value] : defaults.dictionaryRepresentation()) {
        directPrint(key, " = ", text(value), " \n");
    }
}

} // namespace

std::optional<PersistentAppData::Storage> PersistentAppData::storage(int rawValue)
{
    if (rawValue < 0 || rawValue > static_cast<int>(Storage::combined)) {
        return std::nullopt;
    }
    return static_cast<Storage>(rawValue);
}

PersistentAppData& PersistentAppData::sharedInstance()
{
    static PersistentAppData instance;
    return instance;
}

PersistentAppData::PersistentAppData()
    : defaults(NSUserDefaults::standardUserDefaults()), shared(sharedDefaults()), combined(combinedDefaults())
{
}

void PersistentAppData::setString(const std::string& key, const std::string& value, Storage _for)
{
    of(_for).setValueForKey(key, value);
}

std::optional<std::string> PersistentAppData::getString(const std::string& key, Storage from)
{
    return of(from).stringForKey(key);
}

void PersistentAppData::setInteger(const std::string& key, std::int64_t value, Storage _for)
{
    of(_for).setIntegerForKey(key, value);
}

std::int64_t PersistentAppData::getInteger(const std::string& key, Storage from)
{
    return of(from).integerForKey(key);
}

void PersistentAppData::setFloat(const std::string& key, float value, Storage _for)
{
    of(_for).setFloatForKey(key, value);
}

float PersistentAppData::getFloat(const std::string& key, Storage from)
{
    return of(from).floatForKey(key);
}

void PersistentAppData::setBool(const std::string& key, bool value, Storage _for)
{
    of(_for).setBoolForKey(key, value);
}

bool PersistentAppData::getBool(const std::string& key, Storage from)
{
    return of(from).boolForKey(key);
}

void PersistentAppData::setURL(const std::string& key, std::optional<SettingsURL> value, Storage _for)
{
    of(_for).setURLForKey(key, std::move(value));
}

std::optional<SettingsURL> PersistentAppData::getUrl(const std::string& key, Storage from)
{
    return of(from).URLForKey(key);
}

void PersistentAppData::setObject(const std::string& key, std::optional<SettingsValue> value, Storage _for)
{
    of(_for).setObjectForKey(key, std::move(value));
}

std::optional<SettingsValue> PersistentAppData::getObject(const std::string& key, Storage from)
{
    return of(from).objectForKey(key);
}

void PersistentAppData::dumpout()
{
    dump("standard", *NSUserDefaults::standardUserDefaults());
    dump("shared", *sharedDefaults());
    dump("combined", *combinedDefaults());
}

SettingsFrame PersistentAppData::frameToDictionary(const CGRect& frame)
{
    return {{"left", static_cast<float>(frame.x)},
            {"top", static_cast<float>(frame.y)},
            {"width", static_cast<float>(frame.width)},
            {"height", static_cast<float>(frame.height)}};
}

std::optional<CGRect> PersistentAppData::dictionaryToFrame(const std::string& key)
{
    const auto value = sharedInstance().getObject(key);
    const auto* dictionary = value ? std::get_if<SettingsFrame>(&*value) : nullptr;
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    const auto entry = [dictionary](const char* name, double otherwise) {
        const auto found = dictionary->find(name);
        return found == dictionary->end() ? otherwise : static_cast<double>(found->second);
    };
    return CGRect{entry("left", 0.0), entry("top", 0.0), entry("width", 100.0), entry("height", 100.0)};
}

NSUserDefaults& PersistentAppData::of(Storage storage) const
{
    switch (storage) {
    case Storage::shared:
        return *shared;
    case Storage::combined:
        return *combined;
    case Storage::defaults:
        break;
    }
    return *defaults;
}

} // namespace volvelle
