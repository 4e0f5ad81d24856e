#include "rendering/RenderAhead.h"

#include <system_error>
#include <utility>

namespace volvelle {

namespace {

constexpr std::size_t frames = PartRendering::blockFrames;

}

RenderAhead::RenderAhead(std::unique_ptr<PartRendering> rendering, bool onOwnThread, std::size_t most)
    : rendering(std::move(rendering)), mostChunks(1 + most / blocksAtOnce)
{
    if (!onOwnThread) {
        return;
    }
    try {
        thread = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        thread = {};
    }
}

RenderAhead::~RenderAhead()
{
    {
        const std::lock_guard lock(mutex);
        isUnwanted = true;
    }
    changed.notify_all();
    if (thread.joinable()) {
        thread.join();
    }
}

void RenderAhead::run()
{
    bool isEnd = false;
    while (!isEnd) {
        Chunk chunk;
        renderChunk(chunk);
        isEnd = chunk.empty();
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isUnwanted || chunks.size() < mostChunks; });
        isEnd = isEnd || isUnwanted;
        chunks.push_back(std::move(chunk));
        changed.notify_all();
    }
}

void RenderAhead::renderChunk(Chunk& chunk)
{
    chunk.resize(2 * frames * blocksAtOnce);
    std::size_t done = 0;
    while (done < chunk.size() && rendering->renderBlock(chunk.data() + done, chunk.data() + done + frames)) {
        done += 2 * frames;
    }
    chunk.resize(done);
}

bool RenderAhead::takeChunk()
{
    place = 0;
    if (!thread.joinable()) {
        renderChunk(current);
        return !current.empty();
    }
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return !chunks.empty(); });
    current = std::move(chunks.front());
    if (!current.empty()) {
        chunks.pop_front();
        changed.notify_all();
    }
    return !current.empty();
}

std::size_t RenderAhead::blocksAhead()
{
    const std::lock_guard lock(mutex);
    return chunks.size() * blocksAtOnce;
}

bool RenderAhead::addBlock(float* left, float* right)
{
    if (place == current.size() && !takeChunk()) {
        return false;
    }
    for (std::size_t i = 0; i < frames; ++i) {
        left[i] += current[place + i];
        right[i] += current[place + frames + i];
    }
    place += 2 * frames;
    return true;
}

} // namespace volvelle
