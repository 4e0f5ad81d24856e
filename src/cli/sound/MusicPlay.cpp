#include "cli/sound/MusicPlay.h"

#include "base/RunLoop.h"
#include "cli/sound/EndWish.h"

#include <utility>

namespace volvelle {

namespace {

constexpr double lookInterval = 0.03; // seconds

} // namespace

MusicPlay::MusicPlay(PlayDisplay display, News news, Tell tell)
    : display(std::move(display)), news(std::move(news)), tell(std::move(tell))
{
}

std::shared_ptr<MusicPlay> MusicPlay::make(PlayDisplay display, News news, Tell tell)
{
    return std::shared_ptr<MusicPlay>(new MusicPlay(std::move(display), std::move(news), std::move(tell)));
}

Result<> MusicPlay::run(const std::shared_ptr<AVAudioEngine>& engine, std::shared_ptr<MusicTransport> with,
                        const std::vector<std::uint8_t>& data)
{
    transport = std::move(with);
    Result<> ready = transport->load(data);
    ready = ready ? engine->start() : ready;
    ready = ready ? transport->start() : ready;
    if (!ready) {
        return ready;
    }
    const auto timer = mainRunLoop().schedule(lookInterval, weak_from_this(), [this] { look(); });
    mainRunLoop().run();
    timer->invalidate();
    transport = nullptr;
    tellNews();
    display.finish();
    return {};
}

void MusicPlay::look()
{
    tellNews();
    if (takeEndWish() || !readKeys()) {
        return end();
    }
    if (transport->hasEnded()) {
        return mainRunLoop().stop();
    }
    display.show(transport->position(), isPaused);
}

// False where one of them ends the play.
bool MusicPlay::readKeys()
{
    while (const auto key = keys.read()) {
        if (*key == 'q') {
            return false;
        }
        if (*key == ' ') {
            togglePause();
        }
    }
    return true;
}

void MusicPlay::tellNews()
{
    const std::string line = news();
    if (!line.empty()) {
        display.finish();
        tell(line);
    }
}

void MusicPlay::togglePause()
{
    isPaused = !isPaused;
    if (isPaused) {
        transport->pause();
    } else {
        transport->goOn();
    }
}

void MusicPlay::end()
{
    transport->stop();
    mainRunLoop().stop();
}

} // namespace volvelle
