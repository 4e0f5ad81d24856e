#pragma once

#include "audio/AudioUnitBaseDelegate.h"
#include "base/Timer.h"
#include "services/audiograph/graph/AUAudioUnit.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioMixerNode.h"
#include "services/audiograph/graph/AVAudioUnit.h"
#include "services/audiograph/graph/AudioComponentDescription.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

// One audio unit in the graph of an engine: made from a component description, wrapped with rate converters
// where its rate is not the engine's, with its parameters, its MIDI output and its full state.
//
// Every failure prints its message and leaves the wrapper as it stands. Whoever makes it connects
// getOutputNode() into the graph, and lets go of it on the main thread, once the engine stands still or the
// node is out of the graph. [main], but for midi_local()
class AudioUnitBase : public std::enable_shared_from_this<AudioUnitBase> {
public:
    static std::shared_ptr<AudioUnitBase> make(std::shared_ptr<AVAudioEngine> engine);

    virtual ~AudioUnitBase();
    AudioUnitBase(const AudioUnitBase&) = delete;
    AudioUnitBase& operator=(const AudioUnitBase&) = delete;

    AudioComponentDescription componentDescription; // what create() makes
    int index = 0;                                  // free for the owner
    std::shared_ptr<AVAudioEngine> engine;
    std::weak_ptr<AudioUnitBaseDelegate> delegate; // set before the unit sounds

private:
    std::shared_ptr<AVAudioUnit> avAudioUnit;

public:
    std::shared_ptr<AUAudioUnit> audioUnit;
    std::shared_ptr<AVAudioMixerNode> inputNode;  // rate converter ahead of the unit; null for none
    std::shared_ptr<AVAudioMixerNode> outputNode; // rate converter behind the unit; null for none

private:
    std::shared_ptr<AVAudioNode> audioNode;              // main node
    AUParameterObserverToken parameterObserverToken = 0; // 0: none

public:
    std::shared_ptr<AUParameterTree> parameterTree;
    std::vector<std::shared_ptr<AUParameter>> parameters;

    virtual void setAVAudioUnit(const std::shared_ptr<AVAudioUnit>& avunit);
    virtual std::shared_ptr<AVAudioUnit> getAVAudioUnit() const;

    // create() leaves the main node alone: its owner sets it. The bus is ignored.
    virtual void setMainNode(const std::shared_ptr<AVAudioNode>& node);
    virtual std::shared_ptr<AVAudioNode> getMainNode(int bus) const;

    // Where others connect to: the rate converter, else the main node.
    virtual std::shared_ptr<AVAudioNode> getInputNode(int bus) const;
    virtual std::shared_ptr<AVAudioNode> getOutputNode(int bus) const;
    virtual bool isWrapped() const;

protected:
    // Stores the engine, which may be null; all else starts empty.
    explicit AudioUnitBase(std::shared_ptr<AVAudioEngine> engine);

public:
    // Makes the unit, attaches it, and puts rate converters around it where they are needed and the main node
    // is no mixer itself. Ends early, with a null unit told, where there is no such component. No engine is a
    // fatal stop.
    virtual void create(const std::string& name);

    // Takes main node and converters out of the graph and forgets the unit.
    virtual void destroy();

    // Hands a message of the unit to the delegate; what does not begin with a status is dropped. Always
    // noErr. [render]
    [[nodiscard]] virtual OSStatus midi_local(std::int64_t sampleTime, std::uint8_t cable, int length,
                                              const std::uint8_t* data);

    virtual bool isMixer() const;
    virtual bool isMIDIGenerator() const;
    virtual bool isMIDIReceiver() const;

    virtual std::string_view className() const { return "AudioUnitBase"; }

    // MARK: Parameters

    // Takes tree and parameters from the unit and observes their changes.
    void makeParameters();

    // An address that is not there changes nothing, and reads as 0. A negative one is a fatal stop.
    void setParameter(std::int64_t address, float value);
    float getParameter(std::int64_t address) const;

    // MARK: Full state, as a property list

    // The file is replaced as a whole or not at all; where it cannot be written, nothing is told.
    void saveFullState(const std::filesystem::path& url) const;
    void loadFullState(const std::filesystem::path& url);

    // MARK: Diagnostics, printed line by line; a value that there is none of prints as "nil"

    static void nodeDiagnostics(const std::shared_ptr<AVAudioNode>& node); // does nothing
    static void unitDiagnostics(const AUAudioUnit& unit);
    static void busDiagnostics(const AUAudioUnitBus& bus, int index);
    static std::string formatComponentInfo(const AudioComponentDescription& desc);

protected:
    // The steps that creating a unit of any kind has in common.
    void attach(const std::shared_ptr<AVAudioUnit>& avunit);
    void tellCreated(const std::shared_ptr<AudioUnitBase>& unit);

private:
    void connectMIDIOutput();
    void endWarnings();
    void addRateConverters();
    std::shared_ptr<AVAudioMixerNode> attachMixer();
    void removeConverter(std::shared_ptr<AVAudioMixerNode>& node);
    std::string contextText() const;
    std::shared_ptr<AUParameter> parameterAt(std::int64_t address) const;
    void extractParameters(std::string_view name, const AUParameterTree& tree, int level);
    static void observe(const std::weak_ptr<AudioUnitBase>& wrapper, std::uint64_t address, float value);

    std::atomic<bool> lostMIDI{false}; // set by the render thread: a warning is due
    std::shared_ptr<Timer> lostMIDITimer;
};

} // namespace volvelle
