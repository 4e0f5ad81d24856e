#include "base/Checked.h"
#include "phrases/MIDIPhrase.h"
#include "phrases/PolyMetricPass.h"

#include <algorithm>

namespace volvelle {

PhraseEvents MIDIPhrase::generateRandomPhrase_PolyMetric(int noteChannel, int steps)
{
    const auto byteChannel = checkedCast<std::uint8_t>(noteChannel);
    do {
        polyMetricStepGenerator->randomize();
        loadedEvents = PolyMetricPass(*polyMetricStepGenerator, byteChannel).run(steps);
        if (steps == 0) {
            fatalStop(endlessMessage);
        }
    } while (loadedEvents.empty());
    return loadedEvents;
}

void MIDIPhrase::updateEvents_PolyMeter(int steps)
{
    const auto byteChannel = checkedCast<std::uint8_t>(channel);
    loadedEvents = PolyMetricPass(*polyMetricStepGenerator, byteChannel).run(steps);
    if (loadedEvents.empty()) {
        generateRandomPhrase_PolyMetric(channel, steps);
    }
}

PhraseEvents MIDIPhrase::generateRandomPhrase_PolyRhythmic(int instance)
{
    if (instance >= 0) {
        polyRhythmicStepGenerator->randomize(instance);
    } else {
        polyRhythmicStepGenerator->randomize();
    }
    updateEvents_PolyRhythm();
    return loadedEvents;
}

void MIDIPhrase::updateEvents_PolyRhythm()
{
    loadedEvents.clear();
    PhraseEvents bar;
    for (int instance = 0; instance < PolyRhythmicStepGenerator::NUM_INSTANCES; ++instance) {
        for (const auto& step : polyRhythmicStepGenerator->getSteps(instance)) {
            if (step->velocity == 0) {
                continue;
            }
            const auto event = std::make_shared<PhraseEvent>();
            event->id = checkedCast<int>(bar.size());
            event->type = PhraseEvent::noteOn;
            event->channel = checkedCast<std::uint8_t>(channel);
            event->position = step->position;
            event->duration = step->duration;
            event->number = step->note;
            event->value = checkedCast<std::uint8_t>(step->velocity);
            bar.push_back(event);
        }
    }
    for (int i = 0; i < 4; ++i) {
        for (const auto& event : bar) {
            const auto copy = std::make_shared<PhraseEvent>(*event);
            copy->id = checkedCast<int>(loadedEvents.size());
            copy->position = event->position + i * 4.0;
            loadedEvents.push_back(copy);
        }
    }
    std::ranges::stable_sort(loadedEvents, {}, [](const auto& event) { return event->position; });
}

PhraseEvents MIDIPhrase::generateRandomPhrase(int /*channel*/)
{
    return {};
}

} // namespace volvelle
