#include "tests/MIDISequences/realtime/NaiveSequencer.h"

namespace volvelle::test {

namespace {

bool isNote(const Bytes& bytes)
{
    return !bytes.empty() && bytes[0] >= 0x80 && bytes[0] < 0xB0;
}

std::uint8_t byteAt(const Bytes& bytes, std::size_t index)
{
    return index < bytes.size() ? bytes[index] : 0;
}

} // namespace

void NaiveSequencer::load(StampedEvents events)
{
    list = std::move(events);
    index = 0;
    position = 0;
    positionV = 0;
    pending.reset();
    calls.emplace_back("loaded");
}

void NaiveSequencer::start(std::int64_t time)
{
    stop();
    sampleTime = time;
    startTime = time;
    stopped = list.empty();
}

void NaiveSequencer::stop()
{
    suspendTime = sampleTime + static_cast<std::int64_t>(rate);
    sendAll(0xB0, 123);
    sendAll(0xB0, 123);
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        send({static_cast<std::uint8_t>(0xB0 + channel), 121, 0});
        send({static_cast<std::uint8_t>(0xB0 + channel), 64, 0});
    }
    sendAll(0xC0, 0);
    rewind();
    stopped = true;
}

void NaiveSequencer::pause()
{
    pausedTime = sampleTime;
    sendAll(0xB0, 123);
    stopped = true;
}

void NaiveSequencer::goOn()
{
    startTime += sampleTime - pausedTime;
    stopped = false;
}

void NaiveSequencer::rewind()
{
    index = 0;
    position = 0;
    positionV = 0;
    sampleTime = 0;
    pausedTime = 0;
    suspendTime = 0;
    loops = 0;
    seek(0.0);
    index = 0;
}

void NaiveSequencer::seek(double value)
{
    seeking = true;
    const double share = std::min(1.0, std::max(0.0, value));
    const std::int64_t length = list.empty() ? 0 : list.back().frame;
    positionV = static_cast<std::int64_t>(share * static_cast<double>(length));
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].frame >= positionV) {
            index = i;
            return;
        }
    }
}

void NaiveSequencer::seekToEvent(int to)
{
    seeking = true;
    if (to >= 0 && static_cast<std::size_t>(to) < list.size()) {
        index = static_cast<std::size_t>(to);
        position = list[index].frame;
    }
}

void NaiveSequencer::send(const Bytes& bytes)
{
    seeking = true;
    if (waiting.size() < 4096) {
        waiting.push_back({0, bytes});
    }
}

void NaiveSequencer::sendAll(std::uint8_t status, std::uint8_t number)
{
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        send({static_cast<std::uint8_t>(status + channel), number, 0});
    }
}

StampedEvents NaiveSequencer::process(std::int64_t time, int frameCount)
{
    StampedEvents out;
    frames = frameCount;
    sampleTime = time;
    if (list.empty() && waiting.empty()) {
        return out;
    }
    endNotes(out);
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        out.push_back({time + static_cast<std::int64_t>(i), waiting[i].bytes});
    }
    waiting.clear();
    if (!stopped && suspendTime < time) {
        playFile(out);
    }
    return out;
}

void NaiveSequencer::endNotes(StampedEvents& out)
{
    if (stopped || seeking) {
        for (Stamped note : running) {
            note.bytes[2] = 0;
            out.push_back(note);
        }
        running.clear();
        seeking = false;
    }
}

bool NaiveSequencer::passes(const Bytes& bytes) const
{
    const int status = byteAt(bytes, 0);
    if (status < 0x80 || status == 0xF0) {
        return true;
    }
    return std::ranges::count(channels, status % 16) > 0 && std::ranges::count(kinds, status / 16 * 16) == 0;
}

std::optional<std::int64_t> NaiveSequencer::stamp(std::int64_t at, bool note) const
{
    if (at > sampleTime + frames) {
        return sampleTime + frames;
    }
    if (at >= sampleTime) {
        return at;
    }
    return note ? std::nullopt : std::optional<std::int64_t>(-4294967296);
}

void NaiveSequencer::playFile(StampedEvents& out)
{
    position = std::max<std::int64_t>(0, sampleTime - startTime);
    const std::int64_t end = positionV + static_cast<std::int64_t>(static_cast<double>(frames) * tempo);
    for (std::size_t i = index; i < list.size(); ++i) {
        index = i;
        const Stamped event = list[i];
        if (end < event.frame) {
            break;
        }
        const std::int64_t at =
            sampleTime +
            static_cast<std::int64_t>(static_cast<double>(event.frame - positionV) * (1.0 / tempo));
        if (byteAt(event.bytes, 0) == 0xFD) {
            special.push_back({at, event.bytes});
        }
        const auto when = stamp(at, isNote(event.bytes));
        if (!passes(event.bytes) || !when) {
            continue;
        }
        track(event);
        out.push_back({*when, event.bytes});
        if (i + 1 == list.size()) {
            if (endOfFile()) {
                load(*pending);
            }
            return;
        }
    }
    positionV = end;
}

bool NaiveSequencer::endOfFile()
{
    const std::int64_t last = list.back().frame;
    if (!isLooping) {
        stop();
        calls.emplace_back("complete");
        return false;
    }
    rewind();
    ++loops;
    startTime += last;
    calls.emplace_back("loop 1");
    return pending.has_value();
}

void NaiveSequencer::track(const Stamped& event)
{
    const int status = byteAt(event.bytes, 0);
    const bool isOn = status >= 0x90 && status < 0xB0 && byteAt(event.bytes, 2) > 0;
    if (isOn) {
        running.push_back(event);
    } else if (isNote(event.bytes)) {
        const auto place = std::ranges::find_if(
            running, [&](const Stamped& note) { return note.bytes[1] == byteAt(event.bytes, 1); });
        if (place != running.end()) {
            running.erase(place);
        }
    }
}

StampedEvents NaiveSequencer::processInternal(std::int64_t time, int frameCount)
{
    StampedEvents out;
    frames = frameCount;
    sampleTime = time;
    if (list.empty() || stopped) {
        return out;
    }
    position = std::max<std::int64_t>(0, time - startTime);
    const std::int64_t end = position + frameCount;
    for (std::size_t i = index; i < list.size(); ++i) {
        index = i;
        Stamped event = list[i];
        if (event.frame >= end) {
            break;
        }
        if (std::ranges::count(channels, byteAt(event.bytes, 0) % 16) == 0) {
            continue;
        }
        if (i + 1 == list.size()) {
            endOfFile();
        }
        track(event);
        event.frame += startTime;
        event.bytes.resize(std::min<std::size_t>(event.bytes.size(), 3));
        out.push_back(event);
    }
    return out;
}

} // namespace volvelle::test
