#include "services/settings/NSUserDefaults.h"

#include "base/Checked.h"
#include "base/PlainText.h"
#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

namespace volvelle {

namespace {

struct Stores {
    std::mutex mutex;
    NSUserDefaults::StoreMaker maker; // guarded by mutex, as the next
    std::map<std::string, std::shared_ptr<SettingsStore>> made;

    std::shared_ptr<SettingsStore> of(const std::string& name)
    {
        const std::lock_guard lock(mutex);
        std::shared_ptr<SettingsStore>& store = made[name];
        if (!store) {
            store = maker ? maker(name) : std::make_shared<MemorySettingsStore>();
        }
        return store;
    }
};

Stores& stores()
{
    static Stores all;
    return all;
}

constexpr std::string_view blanks = " \t\n\v\f\r";

// The number that a text begins with, after blanks and a plus; "" for none.
std::string numberIn(std::string_view words)
{
    words.remove_prefix(std::min(words.find_first_not_of(blanks), words.size()));
    const std::size_t sign = words.starts_with('+') || words.starts_with('-') ? 1 : 0;
    const std::size_t first = words.find_first_of("0123456789", sign);
    const bool isNumber = first == sign || (first == sign + 1 && words[sign] == '.');
    words.remove_prefix(words.starts_with('+') ? 1 : 0);
    return std::string(isNumber ? words : "");
}

double number(const std::string& words)
{
    const std::string digits = numberIn(words);
    double value = 0.0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

double number(const std::optional<SettingsValue>& value)
{
    if (!value) {
        return 0.0;
    }
    return std::visit(
        [](const auto& held) {
            using Held = std::remove_cvref_t<decltype(held)>;
            if constexpr (std::is_arithmetic_v<Held>) {
                return static_cast<double>(held);
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return number(held);
            } else {
                return 0.0;
            }
        },
        *value);
}

std::int64_t wholeNumber(double value)
{
    const double whole = std::trunc(value);
    constexpr double limit = 0x1p63;
    if (!(whole > -limit)) {
        return std::isnan(whole) ? 0 : std::numeric_limits<std::int64_t>::min();
    }
    return whole < limit ? static_cast<std::int64_t>(whole) : std::numeric_limits<std::int64_t>::max();
}

// Without the loss of a double, where no exponent moves the point.
std::int64_t wholeNumber(const std::string& words)
{
    const std::string digits = numberIn(words);
    const char* const end = digits.data() + digits.size();
    double value = 0.0;
    std::int64_t whole = 0;
    const std::string_view read(digits.data(), std::from_chars(digits.data(), end, value).ptr);
    const bool isPlain = read.find_first_of("eE") == std::string_view::npos;
    return isPlain && std::from_chars(digits.data(), end, whole).ec == std::errc()
               ? whole
               : wholeNumber(number(words));
}

// A word for it in any case of letters, or a number that is not 0.
bool isYes(const std::string& words)
{
    const std::size_t first = std::min(words.find_first_not_of(blanks), words.size());
    const std::string word = smallLetters(words.substr(first, words.find_last_not_of(blanks) + 1 - first));
    return word == "yes" || word == "y" || word == "true" || word == "t" || number(words) != 0.0;
}

} // namespace

void NSUserDefaults::setStoreMaker(StoreMaker maker)
{
    Stores& all = stores();
    const std::lock_guard lock(all.mutex);
    all.maker = std::move(maker);
    all.made.clear();
}

std::shared_ptr<NSUserDefaults> NSUserDefaults::standardUserDefaults()
{
    auto store = stores().of("");
    required(store);
    return std::make_shared<NSUserDefaults>(std::move(store));
}

std::shared_ptr<NSUserDefaults> NSUserDefaults::makeWithSuiteName(const std::string& name)
{
    auto store = stores().of(name);
    return store ? std::make_shared<NSUserDefaults>(std::move(store)) : nullptr;
}

NSUserDefaults::NSUserDefaults(std::shared_ptr<SettingsStore> store) : own(std::move(store)) {}

void NSUserDefaults::addSuiteNamed(const std::string& name)
{
    if (auto suite = stores().of(name)) {
        suites.push_back(std::move(suite));
    }
}

std::optional<SettingsValue> NSUserDefaults::objectForKey(const std::string& key) const
{
    auto value = own->value(key);
    for (auto suite = suites.begin(); !value && suite != suites.end(); ++suite) {
        value = (*suite)->value(key);
    }
    return value;
}

std::optional<std::string> NSUserDefaults::stringForKey(const std::string& key) const
{
    const auto value = objectForKey(key);
    if (!value || std::holds_alternative<SettingsURL>(*value) ||
        std::holds_alternative<SettingsFrame>(*value) ||
        std::holds_alternative<std::vector<std::uint8_t>>(*value)) {
        return std::nullopt;
    }
    if (const bool* truth = std::get_if<bool>(&*value)) {
        return *truth ? "1" : "0";
    }
    return text(*value);
}

std::int64_t NSUserDefaults::integerForKey(const std::string& key) const
{
    const auto value = objectForKey(key);
    if (value && std::holds_alternative<std::int64_t>(*value)) {
        return std::get<std::int64_t>(*value);
    }
    const auto* words = value ? std::get_if<std::string>(&*value) : nullptr;
    return words != nullptr ? wholeNumber(*words) : wholeNumber(number(value));
}

float NSUserDefaults::floatForKey(const std::string& key) const
{
    return static_cast<float>(number(objectForKey(key)));
}

bool NSUserDefaults::boolForKey(const std::string& key) const
{
    const auto value = objectForKey(key);
    const auto* word = value ? std::get_if<std::string>(&*value) : nullptr;
    return word != nullptr ? isYes(*word) : number(value) != 0.0;
}

std::optional<SettingsURL> NSUserDefaults::URLForKey(const std::string& key) const
{
    const auto value = objectForKey(key);
    if (const auto* url = value ? std::get_if<SettingsURL>(&*value) : nullptr) {
        return *url;
    }
    if (const auto* path = value ? std::get_if<std::string>(&*value) : nullptr) {
        return SettingsURL{*path};
    }
    return std::nullopt;
}

void NSUserDefaults::setValueForKey(const std::string& key, std::optional<SettingsValue> value)
{
    own->setValue(key, std::move(value));
}

void NSUserDefaults::setIntegerForKey(const std::string& key, std::int64_t value)
{
    own->setValue(key, value);
}

void NSUserDefaults::setFloatForKey(const std::string& key, float value)
{
    own->setValue(key, value);
}

void NSUserDefaults::setBoolForKey(const std::string& key, bool value)
{
    own->setValue(key, value);
}

void NSUserDefaults::setURLForKey(const std::string& key, std::optional<SettingsURL> value)
{
    own->setValue(key, value ? std::optional<SettingsValue>(*std::move(value)) : std::nullopt);
}

void NSUserDefaults::setObjectForKey(const std::string& key, std::optional<SettingsValue> value)
{
    own->setValue(key, std::move(value));
}

std::map<std::string, SettingsValue> NSUserDefaults::dictionaryRepresentation() const
{
    auto all = own->entries();
    for (const auto& suite : suites) {
        all.merge(suite->entries());
    }
    return all;
}

} // namespace volvelle
