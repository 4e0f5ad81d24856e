#pragma once

#include "MIDISequences/realtime/AUMIDIMonitor.h"
#include "MIDISequences/realtime/AUMIDISequencerDelegate.h"
#include "MIDISequences/realtime/AUMIDISequencerEvents.h"
#include "MIDISequences/realtime/AUMIDISequencerList.h"
#include "MIDISequences/realtime/RenderEventChain.h"
#include "phrases/MIDIPhraseMixer.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace volvelle {

// Plays a flat list of events inside a unit of an engine: each cycle gives the records that fall due in it.
//
// Three clocks: `time` counts samples of the audio clock, the position samples of the file, which run
// tempoFactor times tempoRate as fast, and a cycle takes that many of them, without their fraction: at 0.1
// and one frame nothing moves.
//
// One thread renders, one other operates; both may send. A cycle and an operation exclude one another without
// a lock: an operation waits for the cycle, a cycle that finds one under way gives nothing and does not move.
// Questions wait for nothing. Lists are made and freed off the render thread. While it renders, the lists of
// the monitor belong to the render thread, and fields that are neither atomic nor a queue are changed in
// exclusively(). Delegates are told when the operation is over, by the render thread too: one that operates
// there waits for whatever holds the sequencer (startAtOnce() and stopAtOnce() do not), and one that was
// taken away may be told once more.
class AUMIDISequencer : public AUMIDIMonitor {
public:
    static constexpr std::size_t maximumSpecialEvents = 512;     // the oldest goes
    static constexpr std::size_t maximumLargeSpecialEvents = 64; // of them above 128 bytes; the oldest goes
    static constexpr std::size_t maximumRealtimeEvents = 4096;   // the newest is dropped

    AUMIDISequencer();
    ~AUMIDISequencer() override; // when nothing renders
    AUMIDISequencer(const AUMIDISequencer&) = delete;
    AUMIDISequencer& operator=(const AUMIDISequencer&) = delete;

    std::shared_ptr<AUMIDISequencerDelegate> delegate;
    std::atomic<bool> isMultiChannel{true}; // false: each loading is followed by setChannel(currentChannel)
    std::atomic<bool> isLooping{false};
    std::shared_ptr<MIDIPhraseMixer> phraseMixer;
    // Meta events passed, muted ones too.
    AUMIDISequencerEvents specialEvents{maximumSpecialEvents, maximumLargeSpecialEvents};
    std::atomic<double> samplerate{48000.0}; // Hz
    std::optional<std::filesystem::path> currentFile;
    std::atomic<std::uint8_t> currentChannel{0};
    std::atomic<int> loopCount{0};        // 1 after any pass
    std::atomic<double> tempoFactor{1.0}; // 0.1 to 10 by the operations, as the next
    std::atomic<double> tempoRate{1.0};
    std::atomic<bool> stopped{true};
    std::atomic<bool> seeking{false};        // the next cycle ends the running notes
    std::vector<std::uint8_t> channelFilter; // channels that play; room for 16
    std::vector<std::uint8_t> statusFilter;  // high nibbles that do not play: 0x90 for notes; room for 16
    std::atomic<int> currentEventIndex{0};
    AUMIDISequencerEvents realtimeEvents{maximumRealtimeEvents}; // wait for the next cycle
    std::atomic<int> currentFrames{512};
    std::atomic<std::uint8_t> cable{1}; // of generated events

    // The records at the head of the last cycle's chain that end running notes. They are stamped in the
    // file's time, where their notes began; they sound at the block's first frame. [render]
    int cleanupCount = 0;

    // Empties the lists and stops, without a line. Status filter, rate, sequence and `seeking` stay. [main]
    void reset() override;

    // Counts from the next loading on for the events, at once for seconds. What is no finite rate is a fatal
    // stop at the next stop.
    virtual void setSamplerate(double value);

    // MARK: Questions

    // The events; they are not to be changed. Valid as long as they are held. [main]
    virtual std::vector<std::shared_ptr<AUMIDIEventEx>> getEventList() const;
    virtual std::shared_ptr<AUMIDIEventEx> getCurrentEvent() const; // null past the end [main]
    virtual int getCurrentEventIndex() const;
    virtual bool isEmpty() const;

    // The sequence of the list in use: that of a file put off comes with its events. [main]
    std::shared_ptr<MIDISequence16> sequence() const;

    // MARK: Loading. [main]

    // Stops, and sets the tempo factor to 1, at once in either case. With `force` the file is in use when the
    // call returns. Without, it is parsed in the call, with the sample rate and the cable of this moment, and
    // put in use where the file that plays next starts over: never where nothing plays or loops. A file that
    // is missing is told at once, and nothing is put off any more.
    virtual void loadMIDIFile(const std::optional<std::filesystem::path>& url, bool force);

    // The current file, in use when the call returns; none is a fatal stop.
    virtual void loadMIDIFileInternal();

    // The events of a music sequence, null a fatal stop. It plays on from the start, notes that sound are not
    // ended.
    virtual void loadSequence(const MusicSequence& music);
    virtual std::vector<std::shared_ptr<AUMIDIEventEx>> getTempoEvents();
    virtual std::uint8_t getPatchForChannel(std::uint8_t channel);
    virtual void loadClip(); // asks the mixer twice for nothing
    virtual void saveMIDIFile(const std::filesystem::path& url);
    virtual bool saveMIDIFile2(const std::filesystem::path& url); // writes nothing; true for no events
    virtual void dumpout();

    // MARK: Cycles. [render]

    // The plain form: the events due before the end of the block, whatever has passed of the clock since the
    // start, in records of three bytes at most; valid until the next call. No tempo, no status filter, no
    // gate, and nothing that was sent. The file ends before its last event goes out, which so comes twice as
    // late where the file loops; what was put off is not put in use.
    virtual const std::vector<AUMIDIEvent>& processInternal(std::int64_t time, int frameCount);

    // The records due from `time` to the end of the block, that included; valid until the next call, which
    // takes them back. Null for none. First come records that end running notes (see cleanupCount), then what
    // was sent, a sample apart, then the file's; an event at the end has the next block's first frame. What
    // was sent may so be stamped after the file's, or after the block: stampInOrder() of
    // RenderEventStamps.h tells where each sounds.
    // - A late note is dropped and told; any other late event is told and has immediateTime.
    // - Time 0 gives nothing of the file.
    // - What begins with a byte below 0x80 or with 0xF0 passes all filters. The low nibble of other system
    //   and meta events counts as their channel.
    // - A file ends with its last event: where that one is filtered or dropped, it does not end, and whoever
    //   hosts the sequencer stops it by getDurationInSamples(). A file that ended stands at 0, one that loops
    //   sounds again from the next cycle on.
    // - A tempo that is no number, or that makes the block too long for 64 bits, is a fatal stop where the
    //   file plays; one of 0, where an event is due.
    virtual AURenderEvent* process(std::int64_t time, int frameCount);

    static constexpr std::int64_t immediateTime = -0x100000000;

    // Takes back the records of the last cycle.
    virtual void deallocateRealtimeEventListHead();

    // MARK: Sending. [any] stop() and pause() send while they hold the sequencer: what overrides these may
    // send, but not operate.

    // Records of the next block's first frame. A status and a channel above 255 are a fatal stop. The second
    // is stamped with the length of a block, and has three bytes at most.
    virtual AUMIDIEvent generateRealtimeEvent(std::uint8_t channel, std::uint8_t status, std::uint8_t data1,
                                              std::uint8_t data2);
    virtual AUMIDIEvent generateRealtimeEvent(const std::vector<std::uint8_t>& data);

    // For the next cycle, which also ends the running notes. The second goes out with all its bytes. All that
    // is sent comes by the second form of addRealtimeEvent: whoever looks at it overrides that one.
    virtual void sendEvent(std::uint8_t channel, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    virtual void sendEvent(const std::vector<std::uint8_t>& data);
    virtual void addRealtimeEvent(const AUMIDIEvent& event); // three bytes of it at most
    // The record with `event.length` bytes from `bytes`: a record held by value has room for three alone.
    virtual void addRealtimeEvent(const AUMIDIEvent& event, const std::uint8_t* bytes);
    virtual void allNotesOff();
    virtual void allNotesOff(std::uint8_t channel);
    virtual void allSoundsOff();
    virtual void allSoundsOff(std::uint8_t channel); // the same controller as allNotesOff
    virtual void resetProgram(std::uint8_t channel);
    virtual void resetPrograms();
    virtual void resetControllers();
    virtual void resetControllers(std::uint8_t channel);

    // Makes the first byte of every channel message its channel plus `channel`: what was one is no message
    // any more, and no filter drops it. A note that sounds is so not ended any more, but by allNotesOff() on
    // its channel. A channel of 16 and above is told. It walks the list: cycles give nothing meanwhile.
    // [main]
    virtual void setChannel(std::uint8_t channel);

    // MARK: Positions and tempo

    virtual std::int64_t getCurrentPositionInSamples() const;
    virtual std::int64_t getDurationInSamples() const; // of the list's last event
    virtual double getCurrentPositionInBeats() const;
    virtual double getDurationInBeats() const;
    virtual double getPositionInSeconds() const;
    virtual double getDurationInSeconds() const;
    virtual double getCurrentTimeInSeconds() const; // of the audio clock since the start
    // 0 to 1; beyond where the last event is muted, so that the file does not end.
    virtual double getProgress() const;
    virtual void setTempoFactor(double value); // what is not a number changes nothing
    virtual double getTempoFactor() const;
    virtual void setRate(double value); // as the tempo factor
    virtual double getRate() const;

    // MARK: Transport. [main, render] A thread that renders calls it from a delegate's call, or else within
    // an AUMIDISequencerRenderScope.

    // Stops, and plays from the first event on. `time` is the audio clock's.
    virtual void start(std::int64_t time);
    // Sends notes off, sounds off, controllers and programs to all channels, 80 messages, and rewinds. What
    // plays next is not held back: the gate of a second is open again.
    virtual void stop();
    virtual void pause();
    virtual void _continue();
    virtual bool isPlaying() const;
    virtual void rewind();                     // the clocks too, but for the time of the start
    virtual void seekToPosition(double value); // 0 to 1; what is not a number is a fatal stop
    // Only the next event: the position stays, so that earlier ones are late.
    virtual void seekToEvent(int index);
    virtual void solo(std::uint8_t channel);
    virtual void mute(std::uint8_t channel);
    virtual void unmute(std::uint8_t channel);
    virtual void unmuteAll();
    virtual void muteAll();
    virtual void transpose(int semitones); // does nothing

    // Runs the body while no cycle and no operation runs; it calls no operation. [main]
    void exclusively(const std::function<void()>& body);

    // start() and stop() for the render thread: false, and nothing done, where an operation is under way.
    // [render]
    bool startAtOnce(std::int64_t time);
    bool stopAtOnce();

protected:
    // The list in use. [main, render]
    const AUMIDISequencerList& list() const { return *current.load(std::memory_order_acquire); }

    // Puts a list in use, as a loading does; null is a fatal stop. [main]
    void useList(std::unique_ptr<AUMIDISequencerList> list);

private:
    static constexpr std::uint8_t channelCount = 16;

    // What the delegate is to be told of an operation.
    struct Told {
        std::shared_ptr<AUMIDISequencerDelegate> listener;
        bool isComplete = false;
        bool isLoaded = false;
        std::optional<int> loop;
    };

    template <class Body>
    void own(const Body& body);
    template <class Body>
    bool ownAtOnce(const Body& body);
    static void tell(const Told& told);

    // Those without a hold of their own.
    void startHeld(std::int64_t time);
    void stopHeld();
    void rewindHeld();
    void seekHeld(double value);
    void useListHeld(std::unique_ptr<AUMIDISequencerList> list);
    void dropPending();
    std::unique_ptr<AUMIDISequencerList> parse(const std::filesystem::path& url) const;
    std::unique_ptr<AUMIDISequencerList> flatten(const std::shared_ptr<MIDISequence16>& music,
                                                 std::string path) const;
    bool prepareFile(const std::optional<std::filesystem::path>& url);

    AURenderEvent* cycle(std::int64_t time, int frameCount, Told& told);
    void endRunningNotes(RenderEventChain& chain, bool isSent);
    void sendWaiting(RenderEventChain& chain, std::int64_t time, std::size_t count);
    void playFile(RenderEventChain& chain, int frameCount, double tempo, Told& told);
    bool play(RenderEventChain& chain, std::size_t index, double tempo);
    bool isFiltered(std::uint8_t status) const;
    std::optional<std::int64_t> stampWithin(std::int64_t frameTime, const AUMIDIEvent& record, double tempo);
    void endOfFile(Told& told);
    void loadPending(Told& told);
    void collectDue(std::int64_t time, int frameCount, Told& told);
    // Not what the list has rewritten: that is no note any more.
    void trackAsLoaded(const std::shared_ptr<AUMIDIEventEx>& event, const AUMIDIEvent& record);
    void sendAll(void (AUMIDISequencer::*send)(std::uint8_t));

    // A whole chain: what ends running notes, what was sent, what falls due; and what specialEvents keeps.
    const RenderEventRoom room{
        {static_cast<int>(maximumRunningNotes) + static_cast<int>(maximumRealtimeEvents) + MAXEVENTS,
         static_cast<int>(maximumSpecialEvents) + MAXEVENTS,
         static_cast<int>(maximumSpecialEvents) + MAXEVENTS,
         static_cast<int>(maximumLargeSpecialEvents) + 64}};
    std::atomic_flag owner = ATOMIC_FLAG_INIT;
    std::shared_ptr<AUMIDISequencerDelegate> retiredDelegate; // may still be under way on the render thread
    std::atomic<AUMIDISequencerList*> current;                // owned; never null
    std::unique_ptr<AUMIDISequencerList> prepared;            // for the next time the file starts over
    std::unique_ptr<AUMIDISequencerList> retired;             // a row, to be freed off the render thread
    std::vector<std::shared_ptr<AUMIDIEventEx>> held;         // notes that outlive their list
    std::vector<AUMIDIEvent> internalEvents;                  // what processInternal gives
    std::atomic<int> eventCount{0};                           // of the list in use, as the two below
    std::atomic<std::int64_t> durationInSamples{0};
    std::atomic<double> durationInBeats{0.0};

    std::atomic<std::int64_t> sequencerStartTime{0}; // audio time of the file's start
    std::atomic<std::int64_t> sequencerPosition{0};  // samples of the audio clock
    std::atomic<std::int64_t> sequencerPositionV{0}; // samples of the file
    bool isLoadPending = false;
    std::atomic<std::int64_t> currentSampleTime{0};
    std::int64_t pausedSampletime = 0;
    std::int64_t suspendTime = 0;        // file events wait until it has passed
    AURenderEvent* lastResult = nullptr; // owned
};

} // namespace volvelle
