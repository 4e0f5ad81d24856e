#pragma once

#include "audio/MIDISequencer.h"
#include "audio/MIDISequencerDelegate.h"
#include "cli/sound/PlayDisplay.h"
#include "cli/sound/TerminalKeys.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// One play of a file from its start to its end, or until the user ends it. Runs the main run loop. Made by
// make(). [main]
class MusicPlay : public MIDISequencerDelegate, public std::enable_shared_from_this<MusicPlay> {
public:
    using News = std::function<std::string()>;
    using Tell = std::function<void(const std::string& line)>;

    // Asks `news` for a line every few hundredths of a second, and hands what is not empty to `tell`, which
    // has the terminal to itself meanwhile.
    static std::shared_ptr<MusicPlay> make(PlayDisplay display, News news, Tell tell);

    // Plays the bytes of a file into a unit, and starts the engine where it does not run, when all else is
    // ready. Fails where it could not start.
    Result<> run(const std::shared_ptr<AVAudioEngine>& engine, const std::shared_ptr<AVAudioUnit>& unit,
                 const std::vector<std::uint8_t>& data);

    void onSequencerStateChanged(std::string_view state) override;
    void onSequencerProgress(double current, double total) override;
    void onSequencerComplete() override;
    void onMIDILoad(const std::filesystem::path& url) override;

private:
    MusicPlay(PlayDisplay display, News news, Tell tell);

    // Looks for news, for keys and for a wish to end.
    void look();
    void tellNews();
    void togglePause();
    void end();

    std::shared_ptr<MIDISequencer> transport;
    PlayDisplay display;
    News news;
    Tell tell;
    TerminalKeys keys;
    bool isPaused = false;
};

// Asks a play to end soon. [any] In signal handlers too.
void endMusicPlay();

} // namespace volvelle
