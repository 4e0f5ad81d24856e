#include "MIDISequences/realtime/AUMIDISequencerList.h"

#include "base/Checked.h"
#include "wire/MIDIConstants.h"

#include <algorithm>

namespace volvelle {

namespace {

std::uint8_t inChannel(std::uint8_t status, std::uint8_t channel)
{
    const bool isChannelMessage = status >= STATUS_NOTEOFF && status < STATUS_SYSEX;
    return isChannelMessage ? checkedAdd<std::uint8_t>(status & 0x0FU, channel) : status;
}

std::int64_t stampOf(const std::shared_ptr<AUMIDIEventEx>& event)
{
    return event->pEvent()->eventSampleTime;
}

} // namespace

AUMIDISequencerList::AUMIDISequencerList(SequencerFile newFile, std::shared_ptr<MIDISequence16> newSequence)
    : file(std::move(newFile)),
      sequence(std::move(newSequence)),
      isSorted(std::ranges::is_sorted(file.fileEvents, {}, stampOf))
{
}

AUMIDISequencerList::~AUMIDISequencerList()
{
    while (next) {
        next = std::exchange(next->next, nullptr);
    }
}

AUMIDIEvent AUMIDISequencerList::recordOf(const AUMIDIEventEx& event)
{
    AUMIDIEvent result = *event.pEvent();
    result.length = static_cast<std::uint16_t>(std::min<std::uint32_t>(result.length, event.length()));
    return result;
}

AUMIDIEvent AUMIDISequencerList::record(std::size_t index) const
{
    AUMIDIEvent result = recordOf(*file.fileEvents[index]);
    if (channel) {
        result.data[0] = inChannel(result.data[0], *channel);
    }
    return result;
}

std::int64_t AUMIDISequencerList::stamp(std::size_t index) const
{
    return stampOf(file.fileEvents[index]);
}

std::int64_t AUMIDISequencerList::duration() const
{
    return size() == 0 ? 0 : stamp(size() - 1);
}

double AUMIDISequencerList::beats() const
{
    return size() == 0 ? 0.0 : file.fileEvents.back()->beats;
}

std::size_t AUMIDISequencerList::firstFrom(std::int64_t position) const
{
    const auto& events = file.fileEvents;
    const auto place = isSorted ? std::ranges::lower_bound(events, position, {}, stampOf)
                                : std::ranges::find_if(events, [position](const auto& event) {
                                      return stampOf(event) >= position;
                                  });
    return static_cast<std::size_t>(place - events.begin());
}

std::vector<std::shared_ptr<AUMIDIEventEx>> AUMIDISequencerList::events() const
{
    auto result = file.fileEvents;
    if (channel) {
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i] = event(i);
        }
    }
    return result;
}

std::shared_ptr<AUMIDIEventEx> AUMIDISequencerList::event(std::size_t index) const
{
    if (index >= size()) {
        return nullptr;
    }
    const auto& own = file.fileEvents[index];
    if (!channel) {
        return own;
    }
    auto copy = std::make_shared<AUMIDIEventEx>(*own);
    copy->id = own->id;
    copy->beats = own->beats;
    copy->duration = own->duration;
    copy->meta = own->meta;
    copy->pEvent()->data[0] = inChannel(copy->pEvent()->data[0], *channel);
    return copy;
}

void AUMIDISequencerList::writeChannel(std::uint8_t newChannel)
{
    if (channel) {
        return;
    }
    for (const auto& event : file.fileEvents) {
        AUMIDIEvent& record = *event->pEvent();
        record.data[0] = inChannel(record.data[0], newChannel);
    }
}

} // namespace volvelle
