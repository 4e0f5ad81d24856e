#include "services/audiograph/sequencer/SequencerCore.h"

#include "base/realtime/AudioSource.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

namespace {

constexpr double framesPerSecond = AudioSource::sampleRate;

}

SequencerPosition SequencerCore::position()
{
    positions.update();
    return positions.read();
}

void SequencerCore::beginBlock() noexcept
{
    const SequencerCommand next = commands.update() ? commands.read() : current;
    const bool isStart = next.startSerial != current.startSerial;
    const bool isEnd = current.isPlaying && (!next.isPlaying || isStart);
    if (isEnd && contents.current() != nullptr) {
        contents.current()->release(true);
    }
    const double hereSeconds = seconds();
    const double hereBeats = beats();
    const bool goesOn = current.isPlaying && !isEnd;
    const bool isRenewed = takeContent(goesOn);
    const bool isMove = isStart || next.moveSerial != current.moveSerial;
    const bool isFaster = next.rate != current.rate;
    current = next;
    if (!current.isPlaying || contents.current() == nullptr) {
        return;
    }
    if (isMove && goesOn && !isRenewed) {
        contents.current()->release(false);
    }
    if (isMove || isRenewed) {
        begin(isMove ? current.beats : hereBeats, isMove);
    } else if (isFaster) {
        anchor(hereSeconds);
    }
}

bool SequencerCore::takeContent(bool isSounding) noexcept
{
    return contents.take([isSounding](SequencerContent* before) {
        if (before != nullptr && isSounding) {
            before->release(false);
        }
    });
}

void SequencerCore::begin(double beats, bool isMove) noexcept
{
    SequencerContent& content = *contents.current();
    startSeconds = content.events->tempo.seconds(beats);
    anchor(startSeconds);
    cursor = content.events->firstFrom(isMove ? startSeconds : startSeconds - halfFrame());
    if (isMove && beats <= 0.0) {
        content.silence();
    }
    content.chase(startSeconds);
}

// An event that lies less than half a frame before the block is one of the block; seconds.
double SequencerCore::halfFrame() const noexcept
{
    constexpr double justBelowHalf = 0.499999;
    return justBelowHalf * static_cast<double>(current.rate) / framesPerSecond;
}

void SequencerCore::anchor(double seconds) noexcept
{
    anchorSeconds = seconds;
    anchorFrame = clock;
}

void SequencerCore::play(int frames) noexcept
{
    if (!current.isPlaying || contents.current() == nullptr) {
        return;
    }
    const std::vector<SequencerEvent>& events = contents.current()->events->events;
    const std::int64_t end = clock + frames;
    while (cursor < events.size()) {
        const std::int64_t at = frame(events[cursor]);
        if (at >= end) {
            break;
        }
        const std::size_t first = cursor;
        while (cursor < events.size() && frame(events[cursor]) == at) {
            ++cursor;
        }
        playGroup(first, cursor);
    }
    clock = end;
}

void SequencerCore::playGroup(std::size_t first, std::size_t last) noexcept
{
    SequencerContent& content = *contents.current();
    const std::vector<SequencerEvent>& events = content.events->events;
    const double begin = events[first].seconds;
    for (std::size_t i = first; i < last; ++i) {
        const SequencerEvent& event = events[i];
        if (event.kind == SequencerEvent::noteOff && event.partner < begin && isDue(event)) {
            content.send(event, offset(event));
        }
    }
    for (std::size_t i = first; i < last; ++i) {
        if (events[i].kind != SequencerEvent::noteOff) {
            content.send(events[i], offset(events[i]));
            endAtOnce(events, i, last);
        }
    }
}

// An instrument ends all strikes of a key at the first end, also at that of a note before the start.
bool SequencerCore::isDue(const SequencerEvent& noteOff) const noexcept
{
    return noteOff.partner >= startSeconds || contents.current()->isSounding(noteOff);
}

void SequencerCore::endAtOnce(const std::vector<SequencerEvent>& events, std::size_t onset,
                              std::size_t last) noexcept
{
    const SequencerEvent& event = events[onset];
    if (event.kind != SequencerEvent::noteOn || event.partner > events[last - 1].seconds) {
        return;
    }
    SequencerEvent off = event;
    off.kind = SequencerEvent::noteOff;
    off.bytes = {static_cast<std::uint8_t>(event.bytes[0] & 0x8F), event.bytes[1], event.releaseVelocity};
    contents.current()->send(off, offset(event));
}

double SequencerCore::seconds() const noexcept
{
    return anchorSeconds +
           static_cast<double>(clock - anchorFrame) * static_cast<double>(current.rate) / framesPerSecond;
}

double SequencerCore::beats() const noexcept
{
    return contents.current() == nullptr ? 0.0 : contents.current()->events->tempo.beats(seconds());
}

// Frames of the engine from the anchor.
double SequencerCore::distance(const SequencerEvent& event) const noexcept
{
    constexpr double longest = 1.0e15;
    const double frames =
        (event.seconds - anchorSeconds) * framesPerSecond / static_cast<double>(current.rate);
    return std::min(frames, longest);
}

std::int64_t SequencerCore::frame(const SequencerEvent& event) const noexcept
{
    return std::max<std::int64_t>(clock, anchorFrame + std::llround(distance(event)));
}

// From the start of the block to come; what was rounded up into it lies less than a frame before.
double SequencerCore::offset(const SequencerEvent& event) const noexcept
{
    constexpr double least = -0.5;
    return std::max(least, static_cast<double>(anchorFrame - clock) + distance(event));
}

void SequencerCore::endBlock() noexcept
{
    positions.write({current.serial, beats(), seconds()});
}

void SequencerCore::leave() noexcept
{
    if (current.isPlaying && contents.current() != nullptr) {
        contents.current()->release(true);
    }
    current.isPlaying = false;
}

} // namespace volvelle
