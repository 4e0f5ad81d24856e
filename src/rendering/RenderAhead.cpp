#include "rendering/RenderAhead.h"

#include <system_error>
#include <utility>

namespace volvelle {

namespace {

constexpr std::size_t frames = PartRendering::blockFrames;

}

RenderAhead::RenderAhead(std::unique_ptr<PartRendering> rendering, bool onOwnThread)
    : rendering(std::move(rendering))
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
    isUnwanted = true;
    if (thread.joinable()) {
        thread.join();
    }
}

void RenderAhead::run()
{
    bool isEnd = false;
    while (!isEnd && !isUnwanted) {
        Chunk chunk;
        renderChunk(chunk);
        isEnd = chunk.empty();
        const std::lock_guard lock(mutex);
        chunks.push_back(std::move(chunk));
        changed.notify_one();
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
    }
    return !current.empty();
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
