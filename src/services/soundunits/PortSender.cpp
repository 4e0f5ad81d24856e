#include "services/soundunits/PortSender.h"

#include "base/Console.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

constexpr std::chrono::milliseconds look{1};

} // namespace

std::shared_ptr<PortSender> PortSender::make(std::unique_ptr<MIDIOutput> port)
{
    std::shared_ptr<PortSender> sender(new PortSender(std::move(port)));
    sender->thread = std::thread([sender] {
        sender->sendAll();
        sender->done.release();
    });
    return sender;
}

void PortSender::end(std::chrono::milliseconds patience)
{
    ended.store(true, std::memory_order_release);
    std::int64_t before = 0;
    bool isDone = false;
    do {
        before = sent;
        isDone = done.try_acquire_for(patience);
    } while (!isDone && before != sent);
    isDone ? thread.join() : thread.detach();
}

void PortSender::sendAll()
{
    Moment due;
    std::vector<std::uint8_t> message;
    while (true) {
        const bool isEnd = ended.load(std::memory_order_acquire);
        while (queue.pop(due, message)) {
            waitUntil(due);
            message.empty() ? endAll() : send(message);
        }
        if (isEnd) {
            return endAll();
        }
        if (endWanted.exchange(false, std::memory_order_acq_rel)) {
            endAll();
        }
        std::this_thread::sleep_for(look);
    }
}

void PortSender::waitUntil(Moment due) const
{
    Moment now = std::chrono::steady_clock::now();
    while (now < due && !ended.load(std::memory_order_acquire)) {
        std::this_thread::sleep_for(std::min<Moment::duration>(look, due - now));
        now = std::chrono::steady_clock::now();
    }
}

void PortSender::send(std::span<const std::uint8_t> message)
{
    sounds.apply(message);
    const Result<> handed = port->send(message);
    if (!handed && !lost.exchange(true)) {
        debugprint(handed.error());
    }
    ++sent;
}

void PortSender::endAll()
{
    HeldSounds ending = sounds;
    ending.end([this](std::span<const std::uint8_t> message) { send(message); });
}

} // namespace volvelle
