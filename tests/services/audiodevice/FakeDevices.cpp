#include "tests/services/audiodevice/FakeDevices.h"

#include <algorithm>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <utility>

namespace volvelle::test {

struct FakeDevices::State {
    std::mutex mutex;
    std::condition_variable changed;
    Answer opening = Answer::opens;
    Answer closing = Answer::opens;
    int attempts = 0;
    int opened = 0;
    int closings = 0; // begun
    int closed = 0;
    bool lost = false;
    AudioSource* source = nullptr;

    void waitFor(const int& count, int times)
    {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(10), [&] { return count >= times; }));
    }
};

namespace {

class FakeDevice : public AudioSink {
public:
    explicit FakeDevice(std::shared_ptr<FakeDevices::State> state) : state(std::move(state)) {}

    Result<> open(AudioSource& source) override
    {
        std::unique_lock lock(state->mutex);
        ++state->attempts;
        state->changed.notify_all();
        state->changed.wait(lock, [this] { return state->opening != FakeDevices::Answer::hangs; });
        if (state->opening == FakeDevices::Answer::fails) {
            return failure("Fake: refused");
        }
        ++state->opened;
        state->lost = false;
        state->source = &source;
        state->changed.notify_all();
        return {};
    }

    void close() override
    {
        std::unique_lock lock(state->mutex);
        state->source = nullptr;
        ++state->closings;
        state->changed.notify_all();
        state->changed.wait(lock, [this] { return state->closing != FakeDevices::Answer::hangs; });
        ++state->closed;
        state->changed.notify_all();
    }

    std::string description() const override { return "Fake: Speakers at 44100 Hz"; }

    bool isAudible() const override
    {
        const std::lock_guard lock(state->mutex);
        return !state->lost;
    }

private:
    std::shared_ptr<FakeDevices::State> state;
};

} // namespace

FakeDevices::FakeDevices() : state(std::make_shared<State>()) {}

FakeDevices::~FakeDevices()
{
    release();
}

std::function<std::unique_ptr<AudioSink>()> FakeDevices::factory() const
{
    return [shared = state] { return std::make_unique<FakeDevice>(shared); };
}

void FakeDevices::answerOpen(Answer answer)
{
    const std::lock_guard lock(state->mutex);
    state->opening = answer;
    state->changed.notify_all();
}

void FakeDevices::answerClose(Answer answer)
{
    const std::lock_guard lock(state->mutex);
    state->closing = answer;
    state->changed.notify_all();
}

void FakeDevices::release()
{
    answerOpen(Answer::opens);
    answerClose(Answer::opens);
}

void FakeDevices::waitForOpen(int times)
{
    state->waitFor(state->opened, times);
}

void FakeDevices::waitForAttempts(int times)
{
    state->waitFor(state->attempts, times);
}

void FakeDevices::waitForClosings(int times)
{
    state->waitFor(state->closings, times);
}

void FakeDevices::waitForClosed(int times)
{
    state->waitFor(state->closed, times);
}

std::vector<float> FakeDevices::pull(int frames, int block)
{
    const std::lock_guard lock(state->mutex);
    std::vector<float> left(static_cast<std::size_t>(frames));
    std::vector<float> right(static_cast<std::size_t>(frames));
    for (int done = 0; state->source != nullptr && done < frames; done += block) {
        state->source->render(left.data() + done, right.data() + done, std::min(block, frames - done));
    }
    return left;
}

void FakeDevices::lose()
{
    const std::lock_guard lock(state->mutex);
    state->lost = true;
}

} // namespace volvelle::test
