#include "base/NotificationCenter.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

class NotificationCenters : public testing::Test {
protected:
    NotificationCenter::Block append(const char* word)
    {
        return [this, word](const void* /*object*/) { heard += word; };
    }

    NotificationCenter center;
    std::string heard;
    int one = 0;
    int other = 0;
};

TEST_F(NotificationCenters, BlocksHearTheirNameInTheOrderOfTheirRegistration)
{
    const auto a = center.addObserver("name", nullptr, append("a"));
    const auto b = center.addObserver("other name", nullptr, append("b"));
    const auto c = center.addObserver("name", nullptr, append("c"));
    center.post("name");
    EXPECT_EQ(heard, "ac");
    center.post("nobody's");
    EXPECT_EQ(heard, "ac");
    center.post("other name");
    EXPECT_EQ(heard, "acb");
}

TEST_F(NotificationCenters, ABlockForAnObjectHearsThatObjectAlone)
{
    const auto a = center.addObserver("name", &one, append("a"));
    const auto b = center.addObserver("name", nullptr, append("b"));
    center.post("name", &one);
    EXPECT_EQ(heard, "ab");
    center.post("name", &other);
    EXPECT_EQ(heard, "abb");
    center.post("name");
    EXPECT_EQ(heard, "abbb");
}

TEST_F(NotificationCenters, ABlockIsToldWhoPosts)
{
    const void* told = nullptr;
    const auto token = center.addObserver("name", nullptr, [&told](const void* object) { told = object; });
    center.post("name", &one);
    EXPECT_EQ(told, &one);
}

TEST_F(NotificationCenters, ARegistrationEndsWithItsToken)
{
    auto a = center.addObserver("name", nullptr, append("a"));
    auto held = a;
    a.reset();
    center.post("name");
    EXPECT_EQ(heard, "a");
    held.reset();
    center.post("name");
    EXPECT_EQ(heard, "a");
}

TEST_F(NotificationCenters, ABlockMayRemoveItselfAndOthersWhileItRuns)
{
    NotificationCenter::Token itself;
    NotificationCenter::Token next;
    itself = center.addObserver("name", nullptr, [&](const void* /*object*/) {
        itself.reset();
        next.reset();
        heard += "x";
    });
    next = center.addObserver("name", nullptr, append("y"));
    const auto last = center.addObserver("name", nullptr, append("z"));
    center.post("name");
    EXPECT_EQ(heard, "xz");
    center.post("name");
    EXPECT_EQ(heard, "xzz");
}

TEST_F(NotificationCenters, ABlockThatIsAddedWhileOneRunsHearsTheNextPosting)
{
    NotificationCenter::Token added;
    const auto first = center.addObserver("name", nullptr, [&](const void* /*object*/) {
        if (!added) {
            added = center.addObserver("name", nullptr, append("new"));
        }
    });
    center.post("name");
    EXPECT_EQ(heard, "");
    center.post("name");
    EXPECT_EQ(heard, "new");
}

TEST_F(NotificationCenters, ABlockMayPostWhileItRuns)
{
    const auto outer = center.addObserver("outer", nullptr, [&](const void* /*object*/) {
        heard += "(";
        center.post("inner");
        heard += ")";
    });
    const auto inner = center.addObserver("inner", nullptr, append("i"));
    center.post("outer");
    EXPECT_EQ(heard, "(i)");
}

TEST_F(NotificationCenters, ATokenMayOutliveItsCenterAndABlockMayBeEmpty)
{
    NotificationCenter::Token token;
    {
        NotificationCenter brief;
        token = brief.addObserver("name", nullptr, {});
        brief.post("name");
    }
    token.reset();
}

TEST(NotificationCenterDefault, IsOne)
{
    EXPECT_EQ(&defaultNotificationCenter(), &defaultNotificationCenter());
}

} // namespace
} // namespace volvelle
