#pragma once

#include "audio/MIDISequencer.h"
#include "audio/MIDISequencerDelegate.h"
#include "cli/sound/PlayDisplay.h"
#include "cli/sound/TerminalKeys.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace volvelle {

// One play of a file from its start to its end, or until the user ends it. Runs the main run loop. Made by
// make(). [main thread]
class MusicPlay : public MIDISequencerDelegate, public std::enable_shared_from_this<MusicPlay> {
public:
    static std::shared_ptr<MusicPlay> make(PlayDisplay display);

    // Plays the bytes of a file into a unit; false where it could not start.
    bool run(const std::shared_ptr<AVAudioEngine>& engine, const std::shared_ptr<AVAudioUnit>& unit,
             const std::vector<std::uint8_t>& data);

    void onSequencerStateChanged(std::string_view state) override;
    void onSequencerProgress(double current, double total) override;
    void onSequencerComplete() override;
    void onMIDILoad(const std::filesystem::path& url) override;

private:
    explicit MusicPlay(PlayDisplay display);

    // Looks for keys and for a wish to end.
    void look();
    void togglePause();
    void end();

    std::shared_ptr<MIDISequencer> transport;
    PlayDisplay display;
    TerminalKeys keys;
    bool isPaused = false;
};

// Asks a play to end soon. [any thread, in signal handlers too]
void endMusicPlay();

} // namespace volvelle
