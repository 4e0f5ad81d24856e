#include "phrases/MIDIPhrase.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace volvelle {

namespace {

std::uint8_t transposed(std::uint8_t number, int transpose)
{
    int moved = checkedAdd<int>(number, transpose);
    if (moved > 127) {
        moved -= 127;
    } else if (moved < 0) {
        moved += 127;
    }
    return checkedCast<std::uint8_t>(moved);
}

bool isNote(const PhraseEvent& event)
{
    return event.type == PhraseEvent::noteOn || event.type == PhraseEvent::noteOff;
}

} // namespace

MIDIPhrase::MIDIPhrase()
    : polyMetricStepGenerator(std::make_shared<PolyMetricStepGenerator>()),
      polyRhythmicStepGenerator(std::make_shared<PolyRhythmicStepGenerator>()),
      randomStepGenerator(std::make_shared<RandomStepGenerator>())
{
}

MIDIPhrase::~MIDIPhrase() = default;

void MIDIPhrase::warn(std::string sentence)
{
    directPrint("Warning: ", sentence);
    loadWarnings.push_back(std::move(sentence));
}

std::shared_ptr<MIDIPhrase> MIDIPhrase::make()
{
    return std::shared_ptr<MIDIPhrase>(new MIDIPhrase);
}

void MIDIPhrase::savePhrase(const std::filesystem::path& url)
{
    if (sequence) {
        sequence->saveToFile(url);
    }
}

void MIDIPhrase::loadPhrase(const std::filesystem::path& url, int transpose)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(url, error)) {
        directPrint("MIDIPhrase: Error: The pattern file does not exist.");
        return;
    }
    currentURL = url;
    loadWarnings.clear();
    loadedEvents.clear();
    currentID = 0;
    sequence = nullptr;
    sequence = std::make_shared<MIDISequence16>();
    sequence->delegate = weak_from_this();
    sequence->loadFromFile(url);
    required(sequence, implicitNilMessage).musicSequenceToSequenceNode();
    const double length = required(sequence, implicitNilMessage).getLength();
    directPrint("MIDIPhrase: Sequence length is: ", length);
    const auto beats = checkedCast<std::int64_t>(std::ceil(length));
    currentLength = static_cast<int>(std::min<std::int64_t>(beats, MAXBEATLENGTH));
    if (transpose != 0) {
        for (const auto& event : loadedEvents) {
            if (isNote(*event)) {
                event->number = transposed(event->number, transpose);
            }
        }
    }
    std::ranges::stable_sort(loadedEvents, {}, [](const auto& event) { return event->position; });
}

void MIDIPhrase::loadPhrase2(const std::filesystem::path& url, int transpose)
{
    loadPhrase(url, transpose);
    quantizeEvents(4.0);
    generateEvents();
}

void MIDIPhrase::generateEvents()
{
    generatedEvents.clear();
    int id = 0;
    for (const auto& event : loadedEvents) {
        if (event->type == PhraseEvent::noteOn) {
            const auto copy = std::make_shared<PhraseEvent>(*event);
            copy->id = id++;
            generatedEvents.push_back(copy);
        }
    }
}

void MIDIPhrase::quantizeEvents(double division)
{
    PhraseEvents quantized;
    int id = 0;
    for (const auto& event : loadedEvents) {
        if (event->type == PhraseEvent::noteOn) {
            const auto note = std::make_shared<PhraseEvent>(*event);
            note->id = id++;
            note->position = std::round(event->position * division) / division;
            note->duration = std::round(event->duration * division) / division * 0.99;
            quantized.push_back(note);
        }
    }
    loadedEvents = std::move(quantized);
}

void MIDIPhrase::foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& event)
{
    constexpr double limit = MAXBEATLENGTH;
    const MidiNoteEvent& found = required(event, implicitNilMessage);
    if (found.position > limit) {
        return;
    }
    if (!loadedEvents.empty()) {
        const PhraseEvent& last = *loadedEvents.back();
        if (last.position == found.position && last.number == found.number && last.channel == found.channel) {
            warn(concat("Duplicated note event (", found.number, ") at position ", found.position, "."));
            return;
        }
    }
    const auto on = std::make_shared<PhraseEvent>();
    on->id = currentID;
    on->type = PhraseEvent::noteOn;
    on->channel = checkedCast<std::uint8_t>(channel);
    on->number = found.number;
    on->position = found.position;
    on->duration = static_cast<double>(found.duration);
    on->value = found.velocity;
    on->value2 = found.releaseVelocity;
    const auto off = std::make_shared<PhraseEvent>(*on);
    off->type = PhraseEvent::noteOff;
    off->position = std::min(on->position + on->duration, limit);
    loadedEvents.push_back(on);
    loadedEvents.push_back(off);
    currentID = checkedAdd(currentID, 1);
}

void MIDIPhrase::foundControllerEvent(const std::shared_ptr<MidiControllerEvent>& event)
{
    const MidiControllerEvent& found = required(event, implicitNilMessage);
    if (found.position > MAXBEATLENGTH) {
        return;
    }
    const auto controller = std::make_shared<PhraseEvent>();
    controller->id = currentID;
    controller->type = PhraseEvent::controller;
    controller->channel = found.channel;
    controller->number = found.number;
    controller->position = found.position;
    controller->value = found.value;
    loadedEvents.push_back(controller);
    currentID = checkedAdd(currentID, 1);
}

void MIDIPhrase::foundMetaMarkerEvent(const std::shared_ptr<MetaMarkerEvent>& event)
{
    directPrint("marker: ", required(event, implicitNilMessage).position);
}

} // namespace volvelle
