#pragma once

#include "rendering/PartRendering.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace volvelle {

// Gives a part block by block. On a thread of its own it renders ahead, and keeps what it has until that is
// asked for: 23 MB a minute; else it renders what is asked for. One thread uses it.
class RenderAhead {
public:
    // Where the machine gives no further thread it does without.
    RenderAhead(std::unique_ptr<PartRendering> rendering, bool onOwnThread);
    // Gives up what was not asked for.
    ~RenderAhead();
    RenderAhead(const RenderAhead&) = delete;
    RenderAhead& operator=(const RenderAhead&) = delete;

    // Adds the next block to both channels, and waits for it. False past the last one.
    bool addBlock(float* left, float* right);

private:
    static constexpr std::size_t blocksAtOnce = 32;

    using Chunk = std::vector<float>; // blocks, each the left channel and then the right one

    void run();
    void renderChunk(Chunk& chunk);
    bool takeChunk();

    const std::unique_ptr<PartRendering> rendering; // the thread's, where there is one
    Chunk current;
    std::size_t place = 0; // of the next block in `current`, floats

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Chunk> chunks; // an empty one past the last
    std::atomic<bool> isUnwanted{false};
    std::thread thread; // last: it uses all the others
};

} // namespace volvelle
