#pragma once

#include "services/audiograph/parameters/AUParameter.h"

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace volvelle {

// All parameters of a unit. Which ones there are never changes.
class AUParameterTree {
public:
    explicit AUParameterTree(std::vector<std::shared_ptr<AUParameter>> parameters);
    ~AUParameterTree();
    AUParameterTree(const AUParameterTree&) = delete;
    AUParameterTree& operator=(const AUParameterTree&) = delete;

    const std::vector<std::shared_ptr<AUParameter>> allParameters;

    // Null for an address that is not there. [any]
    std::shared_ptr<AUParameter> parameterWithAddress(AUParameterAddress address) const;

    // From now on `observer` is called with every value that is set, on the thread that sets. An empty
    // observer gives 0. [main, worker]
    AUParameterObserverToken tokenByAddingParameterObserver(AUParameterObserver observer);

    // A call that is under way on another thread may still come to its end. [main, worker]
    void removeParameterObserver(AUParameterObserverToken token);

private:
    friend class AUParameter;

    using Entry = std::pair<AUParameterObserverToken, std::shared_ptr<const AUParameterObserver>>;

    void tell(AUParameterAddress address, float value, AUParameterObserverToken originator);

    std::mutex mutex;
    std::vector<Entry> observers;           // guarded by mutex
    AUParameterObserverToken lastToken = 0; // guarded by mutex
};

} // namespace volvelle
