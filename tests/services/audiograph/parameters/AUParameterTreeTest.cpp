#include "services/audiograph/parameters/AUParameterTree.h"

#include <cmath>
#include <gmock/gmock.h>
#include <thread>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::Pair;

std::shared_ptr<AUParameterTree> makeTree()
{
    return std::make_shared<AUParameterTree>(std::vector<std::shared_ptr<AUParameter>>{
        std::make_shared<AUParameter>(3, "gain", "Gain", -1.0F, 1.0F, 0.5F),
        std::make_shared<AUParameter>(9, "time", "Time", 0.0F, 10.0F, 2.0F)});
}

TEST(AUParameterTree, ParametersAreFoundByAddress)
{
    const auto tree = makeTree();
    EXPECT_EQ(tree->parameterWithAddress(9)->identifier, "time");
    EXPECT_EQ(tree->parameterWithAddress(4), nullptr);
    EXPECT_EQ(tree->allParameters.size(), 2U);
}

TEST(AUParameterTree, ValuesAreBroughtIntoTheRangeAndOthersIgnored)
{
    const auto tree = makeTree();
    const auto gain = tree->parameterWithAddress(3);
    gain->setValue(7.0F);
    EXPECT_EQ(gain->value(), 1.0F);
    gain->setValue(std::nanf(""));
    EXPECT_EQ(gain->value(), 1.0F);
}

TEST(AUParameterTree, ObserversAreToldOnTheThreadThatSets)
{
    const auto tree = makeTree();
    std::vector<std::pair<AUParameterAddress, float>> told;
    std::thread::id where;
    const AUParameterObserverToken token =
        tree->tokenByAddingParameterObserver([&](AUParameterAddress address, float value) {
            told.emplace_back(address, value);
            where = std::this_thread::get_id();
        });
    EXPECT_NE(token, 0U);
    tree->parameterWithAddress(3)->setValue(0.25F);
    EXPECT_EQ(where, std::this_thread::get_id());
    std::thread other([&] { tree->parameterWithAddress(9)->setValue(11.0F); });
    const std::thread::id otherId = other.get_id();
    other.join();
    EXPECT_EQ(where, otherId);
    EXPECT_THAT(told, ElementsAre(Pair(3, 0.25F), Pair(9, 10.0F)));
}

TEST(AUParameterTree, AnObserverIsNotToldOfItsOwnValuesNorAfterItsRemoval)
{
    const auto tree = makeTree();
    int calls = 0;
    const auto token = tree->tokenByAddingParameterObserver([&](AUParameterAddress, float) { ++calls; });
    tree->parameterWithAddress(3)->setValue(0.25F, token);
    EXPECT_EQ(calls, 0);
    tree->removeParameterObserver(token);
    tree->parameterWithAddress(3)->setValue(0.5F);
    EXPECT_EQ(calls, 0);
}

TEST(AUParameterTree, AnEmptyObserverGetsNoToken)
{
    EXPECT_EQ(makeTree()->tokenByAddingParameterObserver({}), 0U);
}

TEST(AUParameterTree, AParameterOutlivesItsTree)
{
    const auto gain = makeTree()->parameterWithAddress(3);
    gain->setValue(0.75F);
    EXPECT_EQ(gain->value(), 0.75F);
}

} // namespace

} // namespace volvelle::test
