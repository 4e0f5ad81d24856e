#include "services/audiodevice/RenderGate.h"

#include <algorithm>
#include <thread>

namespace volvelle {

RenderGate::RenderGate(AudioSource& source) : source(source) {}

void RenderGate::awaitDevice(int longest)
{
    patience = longest;
    turn = Turn::deviceAwaited;
}

void RenderGate::admitDevice()
{
    Turn expected = Turn::clock;
    warm = 0;
    turn.compare_exchange_strong(expected, Turn::clockOrDevice);
}

void RenderGate::dismissDevice()
{
    Turn now = turn;
    while (now != Turn::nobody && !turn.compare_exchange_weak(now, Turn::clock)) {
    }
}

void RenderGate::shut()
{
    turn = Turn::nobody;
    while (rendering) {
        std::this_thread::yield();
    }
}

void RenderGate::ClockSide::render(float* left, float* right, int frames) noexcept
{
    gate.noteWait(frames);
    gate.noteStall(frames);
    gate.renderInTurn(false, left, right, frames);
}

void RenderGate::DeviceSide::render(float* left, float* right, int frames) noexcept
{
    gate.noteFirstPull();
    gate.noteProgress(frames);
    gate.renderInTurn(true, left, right, frames);
}

void RenderGate::noteWait(int frames) noexcept
{
    Turn expected = Turn::deviceAwaited;
    if (turn == expected && patience.fetch_sub(frames) <= frames) {
        turn.compare_exchange_strong(expected, Turn::clockOrDevice);
    }
}

void RenderGate::noteFirstPull() noexcept
{
    Turn expected = Turn::deviceAwaited;
    turn.compare_exchange_strong(expected, Turn::device);
}

void RenderGate::noteStall(int frames) noexcept
{
    const int longest = warm > warmUpFrames ? stallFrames : wakeFrames;
    if (!isDevicePlaying()) {
        stalled = 0;
    } else if (stalled.fetch_add(frames) + frames > longest) {
        Turn expected = Turn::device;
        warm = 0;
        turn.compare_exchange_strong(expected, Turn::clockOrDevice);
    }
}

void RenderGate::noteProgress(int frames) noexcept
{
    stalled = 0;
    if (warm <= warmUpFrames) {
        warm += frames;
    }
    Turn expected = Turn::clockOrDevice;
    if (turn == expected && warm > warmUpFrames) {
        turn.compare_exchange_strong(expected, Turn::device);
    }
}

bool RenderGate::hasTurn(bool device) const noexcept
{
    const Turn now = turn;
    return device ? now == Turn::device : now == Turn::clock || now == Turn::clockOrDevice;
}

void RenderGate::renderInTurn(bool device, float* left, float* right, int frames) noexcept
{
    bool done = false;
    if (hasTurn(device) && !rendering.exchange(true)) {
        done = hasTurn(device);
        if (done) {
            source.render(left, right, frames);
        }
        rendering = false;
    }
    if (!done) {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
    }
}

} // namespace volvelle
