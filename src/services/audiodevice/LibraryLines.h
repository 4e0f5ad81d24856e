#pragma once

#include <ostream>
#include <streambuf>

namespace volvelle {

// Stands in front of a stream, the process's standard error, and drops the lines in which RtAudio and RtMidi
// tell there what their errors tell as well; from their own threads too, when a server dies. All else passes.
// The stream is put back at the end. [any] Made and ended on the main thread.
class LibraryLines : public std::streambuf {
public:
    explicit LibraryLines(std::ostream& stream);
    ~LibraryLines() override;
    LibraryLines(const LibraryLines&) = delete;
    LibraryLines& operator=(const LibraryLines&) = delete;

protected:
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int_type overflow(int_type character) override;
    int sync() override;

private:
    std::ostream& stream;
    std::streambuf* behind;
};

} // namespace volvelle
