#include "services/audiograph/parameters/AUParameter.h"

#include "services/audiograph/parameters/AUParameterTree.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

AUParameter::AUParameter(AUParameterAddress newAddress, std::string newIdentifier, std::string newDisplayName,
                         float minimum, float maximum, float value)
    : address(newAddress),
      identifier(std::move(newIdentifier)),
      displayName(std::move(newDisplayName)),
      minValue(minimum),
      maxValue(maximum),
      stored(value)
{
}

void AUParameter::setValue(float value, AUParameterObserverToken originator)
{
    if (std::isnan(value)) {
        return;
    }
    const float inRange = std::clamp(value, minValue, maxValue);
    stored.store(inRange, std::memory_order_relaxed);
    if (tree != nullptr) {
        tree->tell(address, inRange, originator);
    }
}

} // namespace volvelle
