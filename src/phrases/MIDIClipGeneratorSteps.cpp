#include "base/Checked.h"
#include "phrases/ArrangementTracks.h"
#include "phrases/MIDIClipGenerator.h"

namespace volvelle {

namespace {

template <class Step>
void resize(std::vector<std::shared_ptr<Step>>& steps, int number)
{
    while (std::cmp_greater(steps.size(), number)) {
        steps.pop_back();
    }
    while (std::cmp_less(steps.size(), number)) {
        steps.push_back(std::make_shared<Step>());
    }
}

template <class Step>
bool holds(const std::vector<std::shared_ptr<Step>>& steps, int number)
{
    return number >= 0 && std::cmp_less(number, steps.size());
}

// Lets one instance too many pass: the access after it stops.
bool isAllowedInstance(int instance)
{
    return instance >= 0 && instance <= PolyRhythmicStepGenerator::NUM_INSTANCES;
}

} // namespace

std::vector<std::shared_ptr<PolyMeterStepEvent>> MIDIClipGenerator::getPolyMeterSteps(int channel)
{
    const auto& steps = mixer().polyMeter0->polyMetricStepGenerator->steps;
    return channel == polyMeterChannel ? steps : std::vector<std::shared_ptr<PolyMeterStepEvent>>();
}

void MIDIClipGenerator::adjustPolyMeterSteps(int channel, int number)
{
    PolyMetricStepGenerator& generator = *mixer().polyMeter0->polyMetricStepGenerator;
    if (channel != polyMeterChannel || number < 1 || number > PolyMetricStepGenerator::MAX_STEPS) {
        return;
    }
    resize(generator.steps, number);
    rebuildPolyMeter();
}

std::shared_ptr<PolyMeterStepEvent> MIDIClipGenerator::getPolyMeterStep(int channel, int number)
{
    const auto& steps = mixer().polyMeter0->polyMetricStepGenerator->steps;
    return channel == polyMeterChannel && holds(steps, number) ? checkedAt(steps, number) : nullptr;
}

void MIDIClipGenerator::setPolyMeterStep(const std::shared_ptr<PolyMeterStepEvent>& step, int channel,
                                         int number)
{
    auto& steps = mixer().polyMeter0->polyMetricStepGenerator->steps;
    if (channel != polyMeterChannel || !holds(steps, number)) {
        return;
    }
    required(step);
    checkedAt(steps, number) = step;
    rebuildPolyMeter();
}

std::vector<std::shared_ptr<PolyRhythmStepEvent>> MIDIClipGenerator::getPolyRhythmSteps(int channel,
                                                                                        int instance)
{
    PolyRhythmicStepGenerator& generator = *mixer().polyRhythm0->polyRhythmicStepGenerator;
    return channel == polyRhythmChannel ? generator.getSteps(instance)
                                        : std::vector<std::shared_ptr<PolyRhythmStepEvent>>();
}

void MIDIClipGenerator::adjustPolyRhythmSteps(int channel, int instance, int number)
{
    PolyRhythmicStepGenerator& generator = *mixer().polyRhythm0->polyRhythmicStepGenerator;
    if (channel != polyRhythmChannel || number < 1 || number > PolyRhythmicStepGenerator::MAX_STEPS) {
        return;
    }
    resize(checkedAt(generator.instances, instance)->steps, number);
    rebuildPolyRhythm();
}

std::shared_ptr<PolyRhythmStepEvent> MIDIClipGenerator::getPolyRhythmStep(int channel, int instance,
                                                                          int number)
{
    const PolyRhythmicStepGenerator& generator = *mixer().polyRhythm0->polyRhythmicStepGenerator;
    if (channel != polyRhythmChannel || !isAllowedInstance(instance)) {
        return nullptr;
    }
    const auto& steps = checkedAt(generator.instances, instance)->steps;
    return holds(steps, number) ? checkedAt(steps, number) : nullptr;
}

void MIDIClipGenerator::setPolyRhythmStep(const std::shared_ptr<PolyRhythmStepEvent>& step, int channel,
                                          int instance, int number)
{
    PolyRhythmicStepGenerator& generator = *mixer().polyRhythm0->polyRhythmicStepGenerator;
    if (channel != polyRhythmChannel || !isAllowedInstance(instance)) {
        return;
    }
    auto& steps = checkedAt(generator.instances, instance)->steps;
    if (!holds(steps, number)) {
        return;
    }
    required(step);
    checkedAt(steps, number) = step;
    rebuildPolyRhythm();
}

std::vector<std::shared_ptr<RandomStepEvent>> MIDIClipGenerator::getRandomSteps(int /*channel*/)
{
    mixer();
    return {};
}

void MIDIClipGenerator::rebuildPolyMeter()
{
    MIDIPhraseMixer& tracks = mixer();
    tracks.polyMeter0->updateEvents_PolyMeter(polyMeterSteps);
    tracks.polyMeter0->transposeTrackNotes(*tracks.chordTrack);
}

void MIDIClipGenerator::rebuildPolyRhythm()
{
    mixer().polyRhythm0->updateEvents_PolyRhythm();
    mixer().getSequence();
}

} // namespace volvelle
