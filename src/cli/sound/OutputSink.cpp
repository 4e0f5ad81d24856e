#include "cli/sound/OutputSink.h"

#include <chrono>

namespace volvelle {

namespace {

AudioOutput::Options options()
{
    AudioOutput::Options result;
    result.firstWait = std::chrono::milliseconds(1500);
    result.logs = false; // SinkNews tells
    return result;
}

} // namespace

OutputSink::OutputSink() : output(options()) {}

std::string OutputSink::description() const
{
    return output.isSettled() ? output.description() : "";
}

} // namespace volvelle
