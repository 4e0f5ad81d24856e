#include "cli/sound/RecordSession.h"

#include "base/RunLoop.h"
#include "cli/sound/EndWish.h"
#include "cli/sound/RecordDisplay.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace volvelle {

namespace {

constexpr double lookInterval = 0.03;               // seconds
constexpr std::chrono::seconds questionInterval{2}; // a service takes its time to answer

} // namespace

RecordSession::RecordSession(const Clock& clock, std::optional<double> seconds, bool showsLine)
    : clock(clock), longest(seconds), showsLine(showsLine)
{
}

std::shared_ptr<RecordSession> RecordSession::make(const Clock& clock, std::optional<double> seconds,
                                                   bool showsLine)
{
    return std::shared_ptr<RecordSession>(new RecordSession(clock, seconds, showsLine));
}

Result<> RecordSession::open(MIDIPorts& ports, const std::string& name)
{
    auto opened = ports.openInput(name, take.inbox);
    if (!opened) {
        return failure(std::move(opened).error());
    }
    input = *std::move(opened);
    port = input->name();
    start = now();
    nextQuestion = start + questionInterval;
    if (longest) {
        latest = start + std::chrono::round<Moment::duration>(std::chrono::duration<double>(*longest));
    }
    take.begin(start);
    timer = mainRunLoop().schedule(lookInterval, weak_from_this(), [this] { look(); });
    return {};
}

void RecordSession::run()
{
    if (!isOver()) {
        mainRunLoop().run();
    }
}

void RecordSession::look()
{
    take.collect(latest);
    const Moment moment = now();
    if (moment >= latest || isEndWanted() || hasLostPort(moment)) {
        end(std::min(now(), latest));
    } else if (showsLine) {
        line.show(recordLine(secondsUntil(moment), take.events(), take.keys()));
    }
}

bool RecordSession::isEndWanted()
{
    bool isWanted = takeEndWish();
    while (const auto key = keys.read()) {
        isWanted = isWanted || key == 'q';
    }
    return isWanted;
}

bool RecordSession::hasLostPort(Moment now)
{
    if (now >= nextQuestion) {
        isLost = input->isLost();
        nextQuestion = now + questionInterval;
    }
    return isLost;
}

void RecordSession::end(Moment at)
{
    input = nullptr;
    take.end(at);
    seconds = secondsUntil(at);
    line.finish();
    std::exchange(timer, nullptr)->invalidate();
    mainRunLoop().stop();
}

RecordSession::Moment RecordSession::now() const
{
    return Moment(std::chrono::round<Moment::duration>(std::chrono::duration<double>(clock.now())));
}

double RecordSession::secondsUntil(Moment moment) const
{
    return std::chrono::duration<double>(moment - start).count();
}

} // namespace volvelle
