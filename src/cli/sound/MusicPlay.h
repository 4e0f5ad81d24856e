#pragma once

#include "base/Result.h"
#include "cli/sound/MusicTransport.h"
#include "cli/sound/PlayDisplay.h"
#include "cli/sound/TerminalKeys.h"
#include "services/audiograph/graph/AVAudioEngine.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// One play of a file from its start to its end, or until the user ends it. Runs the main run loop. Made by
// make(). [main]
class MusicPlay : public std::enable_shared_from_this<MusicPlay> {
public:
    using News = std::function<std::string()>;
    using Tell = std::function<void(const std::string& line)>;

    // Asks `news` for a line every few hundredths of a second, and hands what is not empty to `tell`, which
    // has the terminal to itself meanwhile.
    static std::shared_ptr<MusicPlay> make(PlayDisplay display, News news, Tell tell);

    // Plays the bytes of a file, and starts the engine where it does not run, when all else is ready. The
    // transport goes with its end. Fails where it could not start.
    Result<> run(const std::shared_ptr<AVAudioEngine>& engine, std::shared_ptr<MusicTransport> with,
                 const std::vector<std::uint8_t>& data);

private:
    MusicPlay(PlayDisplay display, News news, Tell tell);

    // Looks for news, for keys, for a wish to end and for the end.
    void look();
    bool readKeys();
    void tellNews();
    void togglePause();
    void end();

    std::shared_ptr<MusicTransport> transport;
    PlayDisplay display;
    News news;
    Tell tell;
    TerminalKeys keys;
    bool isPaused = false;
};

} // namespace volvelle
