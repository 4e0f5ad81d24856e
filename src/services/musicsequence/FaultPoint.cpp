#include "services/musicsequence/FaultPoint.h"

#ifdef VOLVELLE_FAULT_POINTS

#include <array>
#include <optional>

namespace volvelle {

namespace {

std::array<std::optional<Fault>, static_cast<std::size_t>(MusicSequenceOperation::count)> faults;

std::optional<Fault>& faultOf(MusicSequenceOperation operation)
{
    return faults.at(static_cast<std::size_t>(operation));
}

} // namespace

void setFault(MusicSequenceOperation operation, Fault fault)
{
    faultOf(operation) = fault;
}

void clearFaults()
{
    faults.fill({});
}

bool takesFault(MusicSequenceOperation operation, OSStatus& status)
{
    std::optional<Fault>& fault = faultOf(operation);
    if (!fault || fault->times == 0) {
        return false;
    }
    if (fault->after > 0) {
        --fault->after;
        return false;
    }
    if (fault->times > 0) {
        --fault->times;
    }
    status = fault->status;
    return true;
}

} // namespace volvelle

#endif
