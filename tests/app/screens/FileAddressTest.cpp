#include "app/screens/FileAddress.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace volvelle {
namespace {

TEST(FileAddress, LeadsToAFileOfThisComputer)
{
    EXPECT_EQ(*fileOf(QUrl("file:///a/b%20c.mid")), "/a/b c.mid");
    EXPECT_EQ(*fileOf(QUrl("file://localhost/%E9.mid")), "/\xE9.mid");
}

TEST(FileAddress, OfAnotherKindIsRefused)
{
    for (const char* address : {"smb:///a/b.mid", "http:///etc/x.mid", "trash:///a.mid", "mtp:/Phone/x.mid",
                                "file://server/a.mid", "/a/b.mid"}) {
        const auto file = fileOf(QUrl(address));
        ASSERT_FALSE(file) << address;
        EXPECT_TRUE(file.error().ends_with("' is not on this computer.")) << file.error();
    }
}

} // namespace
} // namespace volvelle
