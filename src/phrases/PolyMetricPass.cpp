#include "phrases/PolyMetricPass.h"

#include "base/Checked.h"

#include <charconv>
#include <string_view>

namespace volvelle {

namespace {

constexpr double stepLength = 0.25; // beats
constexpr double shortening = 0.99; // of the time of the whole phrase
constexpr int referenceC = 60;

// The text as a whole number with an optional sign, else 0.
std::int64_t stepNumber(std::string_view text)
{
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return 0;
        }
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

std::uint8_t noteNumber(std::string_view type)
{
    std::int64_t note = checkedAdd(stepNumber(type), referenceC);
    if (note >= 128) {
        note -= 127;
    } else if (note < 0) {
        note += 127;
    }
    return checkedCast<std::uint8_t>(note);
}

} // namespace

PolyMetricPass::PolyMetricPass(PolyMetricStepGenerator& generator, std::uint8_t noteChannel)
    : generator(generator), channel(noteChannel)
{
}

PhraseEvents PolyMetricPass::run(int steps)
{
    generator.reset();
    for (const int i : checkedRange(0, steps)) {
        const auto step = generator.nextStep();
        if (step->type == "-") {
            continue;
        }
        addNoteOff(i * stepLength * shortening);
        if (step->type != "#") {
            addNote(i, noteNumber(step->type), step->velocity);
        }
    }
    if (!events.empty() && events.back()->type != PhraseEvent::noteOff) {
        addNoteOff(steps / 4.0 * shortening);
    }
    PhraseEvents notes;
    for (std::size_t place = 0; place < events.size(); ++place) {
        if (events[place]->type == PhraseEvent::noteOn) {
            events[place]->id = checkedCast<int>(place);
            notes.push_back(events[place]);
        }
    }
    return notes;
}

void PolyMetricPass::addNote(int step, std::uint8_t number, int velocity)
{
    const auto note = std::make_shared<PhraseEvent>();
    note->type = PhraseEvent::noteOn;
    note->number = number;
    note->position = step * stepLength;
    note->value = checkedCast<std::uint8_t>(velocity);
    append(note);
}

void PolyMetricPass::addNoteOff(double at)
{
    if (events.empty()) {
        return;
    }
    PhraseEvent& last = *events.back();
    last.duration = last.type == PhraseEvent::noteOff ? 0.0 : at - last.position;
    const auto off = std::make_shared<PhraseEvent>();
    off->type = PhraseEvent::noteOff;
    off->position = at;
    off->value = 0;
    append(off);
}

void PolyMetricPass::append(const std::shared_ptr<PhraseEvent>& event)
{
    event->channel = channel;
    events.push_back(event);
}

} // namespace volvelle
