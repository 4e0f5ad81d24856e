#pragma once

// How the process of a command ends before its command does. [main] At start.
namespace volvelle {

// A fatal stop, a signal that ends the process and memory that does not suffice leave no file behind that is
// half written; the stop and the memory end with exitFailed. A signal that the caller wants ignored stays
// ignored. A file that would grow too large is a failed write.
void prepareSuddenEnds();

// Stands in for a standard stream that the caller closed, so that no file gets its number: what goes there
// fails, as it would without.
void holdStandardStreams();

} // namespace volvelle
