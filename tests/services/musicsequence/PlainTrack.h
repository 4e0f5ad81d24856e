#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace volvelle::test {

// What a track and its iterators are to do, by the simplest means: a sorted list in which every event has a
// number of its own, and iterators that hold such a number.
class PlainTrack {
public:
    struct Event {
        double time = 0.0; // beats
        int value = 0;
        int number = 0;
    };

    void add(double time, int value);
    void clear(double start, double end);
    void cut(double start, double end);
    void copyInsert(double start, double end, double at);
    void merge(double start, double end, double at);
    // False, and nothing done, for a move to below 0.
    bool move(double start, double end, double by);

    void addIterator();
    void removeIterator(std::size_t iterator);
    const Event* current(std::size_t iterator) const; // null past the end
    void step(std::size_t iterator);
    void erase(std::size_t iterator);

    std::vector<Event> events;
    double length = 0.0;                       // beats
    std::vector<std::optional<int>> iterators; // the numbers of their events, none past the end

private:
    std::size_t firstAt(double time) const;
    std::size_t endOf(double start, double end) const;
    std::vector<Event> copyOf(double start, double end) const;
    std::optional<int> numberAt(std::size_t index) const;
    std::size_t indexOf(int number) const;
    void eraseRun(std::size_t first, std::size_t last);
    void insert(const Event& event);

    int nextNumber = 0;
};

} // namespace volvelle::test
