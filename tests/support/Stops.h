#pragma once

#include "base/FatalStop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

// Fatal stops, in the child of a death test.
namespace volvelle::test {

// What a program that was stopped leaves on standard error, where showLog was called.
std::string stopped(std::string_view message, const std::vector<std::string>& lines = {});

// Sends the console to standard error.
void showLog();

} // namespace volvelle::test

// The statement ends in a fatal stop with that message, and with those lines that waited in the log.
#define EXPECT_STOP(statement, ...)                                                                          \
    EXPECT_EXIT(                                                                                             \
        {                                                                                                    \
            volvelle::test::showLog();                                                                       \
            statement;                                                                                       \
        },                                                                                                   \
        testing::KilledBySignal(SIGABRT), testing::Eq(volvelle::test::stopped(__VA_ARGS__)))
