#pragma once

#include "base/Result.h"

#include <map>
#include <string>
#include <string_view>

namespace volvelle {

inline constexpr std::string_view AVAudioSessionCategoryPlayback = "AVAudioSessionCategoryPlayback";

// What the application asks of the sound of the machine: a category, a rate, and whether it is active. Each
// operation can be made to fail. [main]
class AVAudioSession {
public:
    // The one of the process.
    static AVAudioSession& sharedInstance();

    Result<> setCategory(std::string_view category, int options);

    // Refused unless it is above 0 and finite.
    Result<> setPreferredSampleRate(double preferred); // Hz
    Result<> setActive(bool active, int options);

    const std::string& category() const { return chosen; }

    // That of the engine: the device's own rate is its sink's business. Hz
    double sampleRate() const { return rate; }

    bool isActive() const { return active; }

    // From now on the operation of that name ("setCategory" and so on) fails with this sentence; an empty one
    // ends that. Only tests call it.
    void setFailure(const std::string& operation, std::string sentence);

private:
    Result<> failureOf(const std::string& operation) const;

    std::string chosen;
    double rate = 48000.0;
    bool active = false;
    std::map<std::string, std::string> failures;
};

} // namespace volvelle
