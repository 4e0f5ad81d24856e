#pragma once

#include "base/realtime/AudioSink.h"
#include "rendering/PartRendering.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace volvelle {

// Gives a part block by block. On a thread of its own it renders ahead, and keeps what it has until that is
// asked for: 23 MB a minute, and the longest part at most; else it renders what is asked for. One thread uses
// it.
class RenderAhead {
public:
    static constexpr std::size_t blocksAtOnce = 32;
    static constexpr auto mostAhead = static_cast<std::size_t>(
        RenderPart::longestPart * AudioSource::sampleRate / RenderPart::blockFrames); // blocks

    // Where the machine gives no further thread it does without. It keeps so many blocks, or some more.
    RenderAhead(std::unique_ptr<PartRendering> rendering, bool onOwnThread, std::size_t most = mostAhead);
    // Gives up what was not asked for.
    ~RenderAhead();
    RenderAhead(const RenderAhead&) = delete;
    RenderAhead& operator=(const RenderAhead&) = delete;

    // Adds the next block to both channels, and waits for it. False past the last one.
    bool addBlock(float* left, float* right);

    // How many blocks are kept.
    std::size_t blocksAhead();

private:
    using Chunk = std::vector<float>; // blocks, each the left channel and then the right one

    void run();
    void renderChunk(Chunk& chunk);
    bool takeChunk();

    const std::unique_ptr<PartRendering> rendering; // the thread's, where there is one
    const std::size_t mostChunks;
    Chunk current;
    std::size_t place = 0; // of the next block in `current`, floats

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Chunk> chunks; // an empty one past the last
    bool isUnwanted = false;
    std::thread thread; // last: it uses all the others
};

} // namespace volvelle
