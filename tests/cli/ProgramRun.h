#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace volvelle::test {

struct ProgramResult {
    int status = -1;    // exit status, 128 + signal for a killed program
    std::string output; // standard output
    std::string error;  // standard error
};

// Gives each test an empty folder of its own, as working folder of the program that it runs.
class ProgramRun : public testing::Test {
protected:
    ProgramRun();
    ~ProgramRun() override;

    ProgramResult volvelle(const std::string& arguments) const;
    // The same after shell commands in the test's folder, with streams of the caller's choice.
    ProgramResult shell(const std::string& line) const;

    void write(const std::string& name, const std::string& bytes) const;
    std::string read(const std::string& name) const;
    std::vector<std::string> names() const; // what stands in the folder, sorted

    TemporaryFolder temporary;
    std::filesystem::path folder = temporary.path;
};

} // namespace volvelle::test
