#include "audio/AudioUnitBase.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/Text.h"

namespace volvelle {

void AudioUnitBase::makeParameters()
{
    const std::string name = contextText();
    if (!audioUnit) {
        directPrint("AudioUnitBase::makeParameters(): ERROR: The audio unit (", name, ") is nil.");
        return;
    }
    directPrint("AudioUnitBase::makeParameters(): Retriving parameters from the audio unit (", name, "): ");
    parameterTree = audioUnit->parameterTree;
    if (!parameterTree) {
        directPrint("AudioUnitBase::makeParameters(): ERROR: Calling up parameter tree from the audio unit (",
                    name, ") failed.");
        return;
    }
    extractParameters("parameterTree", *parameterTree, 0);
    parameters = parameterTree->allParameters;
    parameterObserverToken = parameterTree->tokenByAddingParameterObserver(
        [wrapper = weak_from_this()](AUParameterAddress address, float value) {
            observe(wrapper, address, value);
        });
    if (parameterObserverToken == 0) {
        directPrint("AudioUnitBase::makeParameters(): ERROR: Could not initialize parameter observer for (",
                    name, ").");
    } else {
        directPrint("AudioUnitBase::makeParameters(): Connected parameters to the observer (", name, ").");
    }
}

// The place for whoever wants the parameters by groups.
void AudioUnitBase::extractParameters(std::string_view /*name*/, const AUParameterTree& /*tree*/,
                                      int /*level*/)
{
}

void AudioUnitBase::observe(const std::weak_ptr<AudioUnitBase>& wrapper, std::uint64_t address, float value)
{
    auto held = wrapper.lock();
    if (!held) {
        directPrint("AudioUnitBase::observer(): ERROR: Weak self is nil.");
        return;
    }
    mainQueue().post([unit = std::move(held), address, value] {
        if (const auto listener = unit->delegate.lock()) {
            listener->onAudioUnitParameter(unit, address, value);
        }
    });
}

void AudioUnitBase::setParameter(std::int64_t address, float value)
{
    if (!parameterTree) {
        directPrint("AudioUnitBase::setParameter(): ERROR: The parameter tree is not initialized.");
    } else if (const auto parameter = parameterAt(address)) {
        parameter->setValue(value);
    } else {
        directPrint("AudioUnitBase::setParameter(): ERROR: The parameter address ", address,
                    " is not there in ", contextText(), ".");
    }
}

float AudioUnitBase::getParameter(std::int64_t address) const
{
    if (!parameterTree) {
        directPrint("AudioUnitBase::getParameter(): ERROR: The parameter tree is not initialized.");
        return 0.0F;
    }
    if (const auto parameter = parameterAt(address)) {
        return parameter->value();
    }
    directPrint("AudioUnitBase::getParameter(): ERROR: The parameter address ", address, " is not therein ",
                contextText(), ".");
    return 0.0F;
}

std::shared_ptr<AUParameter> AudioUnitBase::parameterAt(std::int64_t address) const
{
    return parameterTree->parameterWithAddress(checkedCast<AUParameterAddress>(address));
}

} // namespace volvelle
