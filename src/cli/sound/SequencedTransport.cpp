#include "cli/sound/SequencedTransport.h"

#include "base/Checked.h"

#include <utility>

namespace volvelle {

SequencedTransport::SequencedTransport(std::shared_ptr<SequencedUnit> played) : unit(std::move(played))
{
    required(unit);
}

Result<> SequencedTransport::start()
{
    unit->start();
    return {};
}

} // namespace volvelle
