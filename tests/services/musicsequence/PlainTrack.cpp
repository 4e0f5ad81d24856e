#include "tests/services/musicsequence/PlainTrack.h"

#include <algorithm>

namespace volvelle::test {

void PlainTrack::add(double time, int value)
{
    insert({time, value, nextNumber++});
}

void PlainTrack::clear(double start, double end)
{
    eraseRun(firstAt(start), endOf(start, end));
}

void PlainTrack::cut(double start, double end)
{
    if (start == end) {
        return;
    }
    const std::size_t first = firstAt(start);
    clear(start, end);
    for (std::size_t i = first; i < events.size(); ++i) {
        events[i].time -= end - start;
    }
    length = length > start ? std::max(start, length - (end - start)) : length;
}

void PlainTrack::copyInsert(double start, double end, double at)
{
    const std::vector<Event> copies = copyOf(start, end);
    for (std::size_t i = firstAt(at); i < events.size(); ++i) {
        events[i].time += end - start;
    }
    length += end - start;
    for (const Event& event : copies) {
        add(at + (event.time - start), event.value);
    }
}

void PlainTrack::merge(double start, double end, double at)
{
    for (const Event& event : copyOf(start, end)) {
        add(at + (event.time - start), event.value);
    }
}

bool PlainTrack::move(double start, double end, double by)
{
    std::vector<Event> moved = copyOf(start, end);
    if (!moved.empty() && moved.front().time + by < 0.0) {
        return false;
    }
    const auto first = events.begin() + static_cast<std::ptrdiff_t>(firstAt(start));
    events.erase(first, first + static_cast<std::ptrdiff_t>(moved.size()));
    for (Event event : moved) {
        event.time += by;
        insert(event);
    }
    return true;
}

void PlainTrack::addIterator()
{
    iterators.push_back(numberAt(0));
}

void PlainTrack::removeIterator(std::size_t iterator)
{
    iterators.erase(iterators.begin() + static_cast<std::ptrdiff_t>(iterator));
}

const PlainTrack::Event* PlainTrack::current(std::size_t iterator) const
{
    return iterators[iterator] ? &events[indexOf(*iterators[iterator])] : nullptr;
}

void PlainTrack::step(std::size_t iterator)
{
    iterators[iterator] = numberAt(indexOf(*iterators[iterator]) + 1);
}

void PlainTrack::erase(std::size_t iterator)
{
    const std::size_t index = indexOf(*iterators[iterator]);
    eraseRun(index, index + 1);
}

std::size_t PlainTrack::firstAt(double time) const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(events, [time](const Event& event) { return event.time < time; }));
}

std::size_t PlainTrack::endOf(double start, double end) const
{
    if (start == end) {
        return firstAt(start);
    }
    return end >= length ? events.size() : firstAt(end);
}

std::vector<PlainTrack::Event> PlainTrack::copyOf(double start, double end) const
{
    return {events.begin() + static_cast<std::ptrdiff_t>(firstAt(start)),
            events.begin() + static_cast<std::ptrdiff_t>(endOf(start, end))};
}

std::optional<int> PlainTrack::numberAt(std::size_t index) const
{
    return index < events.size() ? std::optional(events[index].number) : std::nullopt;
}

std::size_t PlainTrack::indexOf(int number) const
{
    return static_cast<std::size_t>(std::ranges::find(events, number, &Event::number) - events.begin());
}

void PlainTrack::eraseRun(std::size_t first, std::size_t last)
{
    const std::optional<int> following = numberAt(last);
    for (std::optional<int>& iterator : iterators) {
        const std::size_t index = iterator ? indexOf(*iterator) : last;
        iterator = index >= first && index < last ? following : iterator;
    }
    events.erase(events.begin() + static_cast<std::ptrdiff_t>(first),
                 events.begin() + static_cast<std::ptrdiff_t>(last));
}

void PlainTrack::insert(const Event& event)
{
    events.insert(std::ranges::upper_bound(events, event.time, {}, &Event::time), event);
    length = std::max(length, event.time);
}

} // namespace volvelle::test
