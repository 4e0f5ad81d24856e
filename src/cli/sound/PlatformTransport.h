#pragma once

#include "audio/MIDISequencer.h"
#include "audio/MIDISequencerDelegate.h"
#include "cli/sound/MusicTransport.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace volvelle {

// Plays by the platform's sequencer, through the transport of the application. Made by make(). [main]
class PlatformTransport : public MusicTransport,
                          public MIDISequencerDelegate,
                          public std::enable_shared_from_this<PlatformTransport> {
public:
    // All tracks go to `unit`.
    static std::shared_ptr<PlatformTransport> make(const std::shared_ptr<AVAudioEngine>& engine,
                                                   std::shared_ptr<AVAudioUnit> unit);

    Result<> load(const std::vector<std::uint8_t>& data) override;
    Result<> start() override;

    void pause() override { transport->pause(); }

    void goOn() override { transport->play(); }

    void stop() override { transport->stop(); }

    double position() const override { return beats; }

    bool hasEnded() const override { return isComplete; }

    void onSequencerStateChanged(std::string_view state) override;
    void onSequencerProgress(double current, double total) override;
    void onSequencerComplete() override;
    void onMIDILoad(const std::filesystem::path& url) override;

private:
    explicit PlatformTransport(std::shared_ptr<AVAudioUnit> unit);

    const std::shared_ptr<AVAudioUnit> unit;
    const std::shared_ptr<MIDISequencer> transport;
    double beats = 0.0;
    bool isComplete = false;
};

} // namespace volvelle
