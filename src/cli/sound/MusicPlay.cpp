#include "cli/sound/MusicPlay.h"

#include "base/RunLoop.h"

#include <atomic>
#include <utility>

namespace volvelle {

namespace {

constexpr double lookInterval = 0.03; // seconds
std::atomic<bool> endWanted{false};

} // namespace

MusicPlay::MusicPlay(PlayDisplay shown) : display(std::move(shown)) {}

std::shared_ptr<MusicPlay> MusicPlay::make(PlayDisplay display)
{
    return std::shared_ptr<MusicPlay>(new MusicPlay(std::move(display)));
}

bool MusicPlay::run(const std::shared_ptr<AVAudioEngine>& engine, const std::shared_ptr<AVAudioUnit>& unit,
                    const std::vector<std::uint8_t>& data)
{
    transport = MIDISequencer::make();
    transport->delegate = weak_from_this();
    transport->connect(engine);
    transport->loadFromData(data);
    transport->setTrackPorts(unit);
    if (!transport->start()) {
        return false;
    }
    const auto timer = mainRunLoop().schedule(lookInterval, weak_from_this(), [this, engine] {
        engine->collectGarbage();
        look();
    });
    mainRunLoop().run();
    timer->invalidate();
    transport = nullptr;
    display.finish();
    return true;
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
