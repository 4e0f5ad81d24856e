#include "cli/sound/MusicPlay.h"

#include "base/RunLoop.h"

#include <atomic>
#include <utility>

namespace volvelle {

namespace {

constexpr double lookInterval = 0.03; // seconds
std::atomic<bool> endWanted{false};

} // namespace

MusicPlay::MusicPlay(PlayDisplay shown, News from, Tell to)
    : display(std::move(shown)), news(std::move(from)), tell(std::move(to))
{
}

std::shared_ptr<MusicPlay> MusicPlay::make(PlayDisplay display, News news, Tell tell)
{
    return std::shared_ptr<MusicPlay>(new MusicPlay(std::move(display), std::move(news), std::move(tell)));
}

Result<> MusicPlay::run(const std::shared_ptr<AVAudioEngine>& engine,
                        const std::shared_ptr<AVAudioUnit>& unit, const std::vector<std::uint8_t>& data)
{
    transport = MIDISequencer::make();
    transport->delegate = weak_from_this();
    transport->connect(engine);
    transport->loadFromData(data);
    transport->setTrackPorts(unit);
    if (Result<> started = engine->start(); !started) {
        return started;
    }
    if (!transport->start()) {
        return failure("The music could not be started.");
    }
    const auto timer = mainRunLoop().schedule(lookInterval, weak_from_this(), [this] { look(); });
    mainRunLoop().run();
    timer->invalidate();
    transport = nullptr;
    tellNews();
    display.finish();
    return {};
}

void MusicPlay::onSequencerStateChanged(std::string_view /*state*/) {}

void MusicPlay::onSequencerProgress(double current, double /*total*/)
{
    display.show(current, isPaused);
}

void MusicPlay::onSequencerComplete()
{
    mainRunLoop().stop();
}

void MusicPlay::onMIDILoad(const std::filesystem::path& /*url*/) {}

void MusicPlay::look()
{
    tellNews();
    if (endWanted.exchange(false)) {
        return end();
    }
    while (const auto key = keys.read()) {
        if (*key == ' ') {
            togglePause();
        } else if (*key == 'q') {
            return end();
        }
    }
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
        transport->play();
    }
}

void MusicPlay::end()
{
    transport->stop();
    mainRunLoop().stop();
}

void endMusicPlay()
{
    endWanted = true;
}

} // namespace volvelle
