#include "cli/sound/SinkNews.h"

#include "base/Text.h"

#include <utility>

namespace volvelle {

SinkNews::SinkNews(std::string music, std::shared_ptr<const AudioSink> sink)
    : music(std::move(music)), sink(std::move(sink))
{
}

std::string SinkNews::next()
{
    const std::string now = sink->description();
    if (now.empty() || now == told) {
        return "";
    }
    const bool isFirst = std::exchange(told, now).empty();
    const bool isAudible = sink->isAudible();
    const bool isAgain = std::exchange(wasHeard, wasHeard || isAudible);
    if (isFirst) {
        return concat("Playing '", music, "' through ", now, ".");
    }
    if (!isAudible) {
        return "The audio device was lost: the music plays on silently.";
    }
    return concat("Playing through ", now, isAgain ? " again." : ".");
}

} // namespace volvelle
