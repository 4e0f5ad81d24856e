#include "services/audiodevice/AVAudioSession.h"

#include <cmath>
#include <utility>

namespace volvelle {

AVAudioSession& AVAudioSession::sharedInstance()
{
    static AVAudioSession session;
    return session;
}

Result<> AVAudioSession::setCategory(std::string_view category, int /*options*/)
{
    auto done = failureOf("setCategory");
    if (done) {
        chosen = category;
    }
    return done;
}

Result<> AVAudioSession::setPreferredSampleRate(double preferred)
{
    if (!std::isfinite(preferred) || preferred <= 0.0) {
        return failure("The sample rate is out of range.");
    }
    auto done = failureOf("setPreferredSampleRate");
    if (done) {
        rate = preferred;
    }
    return done;
}

Result<> AVAudioSession::setActive(bool isActive, int /*options*/)
{
    auto done = failureOf("setActive");
    if (done) {
        active = isActive;
    }
    return done;
}

void AVAudioSession::setFailure(const std::string& operation, std::string sentence)
{
    failures[operation] = std::move(sentence);
}

Result<> AVAudioSession::failureOf(const std::string& operation) const
{
    const auto found = failures.find(operation);
    if (found == failures.end() || found->second.empty()) {
        return {};
    }
    return failure(found->second);
}

} // namespace volvelle
