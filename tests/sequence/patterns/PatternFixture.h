#pragma once

#include "base/Text.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/sequence/RecordingDelegate.h"
#include "tests/sequence/SequenceTexts.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

class PatternFixture : public testing::Test {
protected:
    using Operation = MusicSequenceOperation;

    void TearDown() override { clearFaults(); }

    static void fail(Operation operation, OSStatus status = someStatus, int after = 0, int times = 1)
    {
        setFault(operation, {status, after, times});
    }

    // The lines since the last call; the number of a source line that one begins with becomes "{line}" where
    // it is a small one.
    Lines said()
    {
        Lines lines = console.take();
        for (std::string& line : lines) {
            const std::size_t digits = line.find_first_not_of("0123456789");
            if (digits != std::string::npos && digits > 0 && digits < 4 && line[0] != '0') {
                line.replace(0, digits, "{line}");
            }
        }
        return lines;
    }

    ConsoleCapture console;
};

} // namespace volvelle::test
