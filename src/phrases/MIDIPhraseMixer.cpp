#include "phrases/MIDIPhraseMixer.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "midi/MIDIDefinitions.h"
#include "midi/Tempo.h"
#include "phrases/ArrangementTracks.h"
#include "phrases/PhraseEventWriter.h"

#include <algorithm>
#include <optional>

namespace volvelle {

namespace {

std::optional<std::uint8_t> statusOf(const PhraseEvent& event)
{
    switch (event.type) {
    case PhraseEvent::noteOn:
    case PhraseEvent::noteOff:
        return MIDIStatus(MIDIStatus::NoteOn).rawValue();
    case PhraseEvent::controller:
        return MIDIStatus(MIDIStatus::ControlChange).rawValue();
    case PhraseEvent::programChange:
        return MIDIStatus(MIDIStatus::ProgramChange).rawValue();
    case PhraseEvent::pitchWheel:
        return MIDIStatus(MIDIStatus::PitchBend).rawValue();
    case PhraseEvent::afterTouch:
        return MIDIStatus(MIDIStatus::ChannelPressure).rawValue();
    default:
        return std::nullopt;
    }
}

std::int64_t samples(double beats)
{
    return checkedCast<std::int64_t>(beats * usualSamplesPerBeat);
}

} // namespace

MIDIPhraseMixer::MIDIPhraseMixer()
    : chordTrack(MIDIChordPhrase::make()),
      phraseTrack0(MIDIPhrase::make()),
      leadTrack0(MIDIPhrase::make()),
      bassTrack0(MIDIPhrase::make()),
      drumTrack0(MIDIPhrase::make()),
      polyMeter0(MIDIPhrase::make()),
      polyRhythm0(MIDIPhrase::make())
{
    chordTrack->channel = chordChannel;
    chordTrack->isMasterTrack = true;
    activeState.fill(true);
    for (const ArrangementTrack& track : arrangementTracks) {
        checkedAt(activeState, track.channel) = track.isActive;
    }
}

MIDIPhraseMixer::~MIDIPhraseMixer() = default;

void MIDIPhraseMixer::loadTrack(int /*track*/, const std::filesystem::path& /*url*/) {}

std::shared_ptr<MIDISequence16> MIDIPhraseMixer::getSequence()
{
    makeSequence();
    required(sequence, implicitNilMessage);
    return sequence;
}

void MIDIPhraseMixer::makeSequence()
{
    sequence = std::make_shared<MIDISequence16>();
    mixChannels();
    if (mixedEvents.empty()) {
        directPrint("Arranger::makeSequence() : There are no events for mixing.");
    }
    for (const auto& event : mixedEvents) {
        writePhraseEvent(*sequence, *event);
    }
}

void MIDIPhraseMixer::save(const std::filesystem::path& url)
{
    makeSequence();
    required(sequence, implicitNilMessage).saveToFile(url);
}

void MIDIPhraseMixer::save(MIDISequence16& given, const std::filesystem::path& url)
{
    given.saveToFile(url);
}

void MIDIPhraseMixer::mixChannels()
{
    mixedEvents.clear();
    for (const ArrangementTrack& track : arrangementTracks) {
        if (checkedAt(activeState, track.channel)) {
            const PhraseEvents& events = track.phraseIn(*this).*track.heard;
            mixedEvents.insert(mixedEvents.end(), events.begin(), events.end());
        }
    }
    std::ranges::stable_sort(mixedEvents, {}, [](const auto& event) { return event->position; });
}

std::vector<AUMIDIEvent> MIDIPhraseMixer::phraseEventsToAUMIDIEvents()
{
    mixChannels();
    std::vector<AUMIDIEvent> result;
    for (const auto& event : mixedEvents) {
        const std::int64_t time = samples(event->position);
        const auto status = statusOf(*event);
        if (!status) {
            continue;
        }
        const bool isOff = event->type == PhraseEvent::noteOff;
        AUMIDIEvent record{};
        record.eventSampleTime = isOff ? checkedAdd(time, samples(event->duration)) : time;
        record.eventType = AURenderEventMIDI;
        record.length = 3;
        record.data[0] = checkedAdd(*status, event->channel);
        record.data[1] = event->number;
        record.data[2] = isOff ? std::uint8_t{0} : event->value;
        result.push_back(record);
    }
    std::ranges::stable_sort(result, {}, &AUMIDIEvent::eventSampleTime);
    return result;
}

} // namespace volvelle
