#pragma once

#include "base/realtime/AudioSink.h"

#include <memory>
#include <string>

namespace volvelle {

// What there is to tell of the sink that music plays into: through what it began, that the device was lost,
// that there is one again. [main]
class SinkNews {
public:
    // `music` is what plays, as the first line tells it.
    SinkNews(std::string music, std::shared_ptr<const AudioSink> sink);

    // The line for what has changed since the last call; empty where nothing has, and until the sink has a
    // description.
    std::string next();

private:
    std::string music;
    std::shared_ptr<const AudioSink> sink;
    std::string told; // the description that the last line told of; empty before the first
    bool wasHeard = false;
};

} // namespace volvelle
