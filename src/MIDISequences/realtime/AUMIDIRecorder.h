#pragma once

#include "MIDISequences/realtime/AUMIDIMonitor.h"
#include "MIDISequences/realtime/MIDIRecorder.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>

namespace volvelle {

// Collects render events, and writes them into a file when it saves. Times are samples at 48,000 Hz. [main]
// Several threads may use it at once, but save() is for when nothing is recorded any more.
class AUMIDIRecorder : public AUMIDIMonitor {
public:
    AUMIDIRecorder();

    std::shared_ptr<MIDIRecorder> recorder;     // of the last save()
    std::atomic<std::int64_t> startTime{0};     // samples
    std::atomic<std::int64_t> eventPosition{0}; // samples since startTime, of the last event
    std::atomic<bool> isStarted{false};

    void reset() override;
    virtual void setSamplerate(double samplerate); // does nothing

    // Forgets what was recorded.
    virtual void start(std::int64_t time);
    virtual void stop();
    virtual void pause(); // the same as stop()
    virtual std::int64_t getPosition() const;
    virtual int getCount() const;
    virtual std::int64_t getStartTime() const;
    virtual bool isRecording() const;

    // Keeps a copy, timed from startTime on, and tells of it in the log; notes with key 0 are not kept. A
    // meta event loses its type, and is saved with type 0x7F and all its bytes. [sender] Takes its turn on
    // the queue, and allocates.
    virtual void record(const AUMIDIEventEx& event);

    // True for the start and the end of a note with key 0.
    virtual bool filterGhostNotes(const AUMIDIEventEx& event) const;

    // Puts what was recorded in the order of time and writes a file of it, at 120 beats per minute. What was
    // recorded is kept; notes without an end are not written.
    virtual void save(const std::filesystem::path& url);

    // Does all of save() but writing a file: what was recorded stands in `recorder` then, which is `into`, or
    // a new one for null. False where nothing was recorded, which the log tells.
    bool writeDown(std::shared_ptr<MIDIRecorder> into = nullptr);
};

} // namespace volvelle
