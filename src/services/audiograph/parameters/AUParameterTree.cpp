#include "services/audiograph/parameters/AUParameterTree.h"

#include <algorithm>

namespace volvelle {

AUParameterTree::AUParameterTree(std::vector<std::shared_ptr<AUParameter>> parameters)
    : allParameters(std::move(parameters))
{
    for (const auto& parameter : allParameters) {
        parameter->tree = this;
    }
}

AUParameterTree::~AUParameterTree()
{
    for (const auto& parameter : allParameters) {
        parameter->tree = nullptr;
    }
}

std::shared_ptr<AUParameter> AUParameterTree::parameterWithAddress(AUParameterAddress address) const
{
    const auto found =
        std::find_if(allParameters.begin(), allParameters.end(),
                     [address](const auto& parameter) { return parameter->address == address; });
    return found == allParameters.end() ? nullptr : *found;
}

AUParameterObserverToken AUParameterTree::tokenByAddingParameterObserver(AUParameterObserver observer)
{
    if (!observer) {
        return 0;
    }
    const std::lock_guard lock(mutex);
    observers.emplace_back(++lastToken, std::make_shared<const AUParameterObserver>(std::move(observer)));
    return lastToken;
}

void AUParameterTree::removeParameterObserver(AUParameterObserverToken token)
{
    const std::lock_guard lock(mutex);
    std::erase_if(observers, [token](const Entry& entry) { return entry.first == token; });
}

void AUParameterTree::tell(AUParameterAddress address, float value, AUParameterObserverToken originator)
{
    std::vector<Entry> copies;
    {
        const std::lock_guard lock(mutex);
        copies = observers;
    }
    for (const auto& [token, observer] : copies) {
        if (token != originator) {
            (*observer)(address, value);
        }
    }
}

} // namespace volvelle
