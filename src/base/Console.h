#pragma once

#include "base/Text.h"

#include <atomic>
#include <string>
#include <string_view>

namespace volvelle {

// Where console lines end up. One sink is in force at a time.
class ConsoleSink {
public:
    virtual ~ConsoleSink() = default;

    // One line without its line end; may hold line ends of its own. [any] On the thread that prints.
    virtual void write(std::string_view line) = 0;
};

// The one console of the process. Without a sink every line is dropped, and nothing is queued for it.
class Console {
public:
    // Puts a sink in force, null for none, and returns the one before. The caller keeps it alive.
    // [main]
    ConsoleSink* setSink(ConsoleSink* sink);

    bool isHeard() const { return current.load(std::memory_order_acquire) != nullptr; }

    void write(std::string_view line);

private:
    std::atomic<ConsoleSink*> current{nullptr};
};

Console& console();

// Drops the lines that are written while it lives. [main]
class ConsoleSilence {
public:
    ConsoleSilence();
    ~ConsoleSilence();
    ConsoleSilence(const ConsoleSilence&) = delete;
    ConsoleSilence& operator=(const ConsoleSilence&) = delete;

private:
    ConsoleSink* const before;
};

// Lines on standard output as plain text, flushed by the line.
class StandardOutputSink : public ConsoleSink {
public:
    void write(std::string_view line) override;
};

// The log of the whole system: hands the texts of all arguments, joined, to the main queue, which writes them
// as one line. The lines of one thread keep their order, and the caller does not wait. Without a sink no text
// is built. [any]
template <class... Values>
void safeprint(const Values&... values);
template <class... Values>
void debugprint(const Values&... values);

// The log for a thread that renders: a line of two texts, which reaches the console when the main queue is
// drained next. What finds no room is counted, and the count is a line of its own; a line is cut off at
// LineRing::longest bytes. [any] On render threads too: no lock, no allocation.
void realtimeprint(std::string_view beginning, std::string_view rest = "") noexcept;

// Writes the lines of rendering threads that wait. [main] In a fatal stop any.
void writeRealtimeLines();

// Writes the texts of all arguments, joined, as a line at once, on the caller's thread; on the main thread
// the log lines that wait are written first. Without a sink no text is built.
template <class... Values>
void directPrint(const Values&... values);

// Writes the log lines that wait, those of rendering threads too; called off the main thread it does nothing.
void flushLog();

// Private to the templates.
void queueLine(std::string line);
void writeAtOnce(std::string_view line);

template <class... Values>
void safeprint(const Values&... values)
{
    if (console().isHeard()) {
        queueLine(concat(values...));
    }
}

template <class... Values>
void debugprint(const Values&... values)
{
    safeprint(values...);
}

template <class... Values>
void directPrint(const Values&... values)
{
    if (console().isHeard()) {
        writeAtOnce(concat(values...));
    }
}

} // namespace volvelle
