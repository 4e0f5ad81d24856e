#include "tests/audio/UnitFixture.h"

#include <thread>

namespace volvelle::test {
namespace {

class AudioUnitBaseParametersTest : public UnitTest {
protected:
    void SetUp() override
    {
        wrapper->create("Lead");
        console.take();
        listener->calls.clear();
        listener->created.reset();
    }

    float value(std::size_t index) const
    {
        return component.unit->parameterTree->allParameters[index]->value();
    }
};

TEST_F(AudioUnitBaseParametersTest, CreatingTakesTheTreeAndAllParametersOfTheUnit)
{
    EXPECT_EQ(wrapper->parameterTree, component.unit->parameterTree);
    EXPECT_EQ(wrapper->parameters, component.unit->parameterTree->allParameters);
    EXPECT_EQ(wrapper->parameters.size(), 2U);
}

TEST_F(AudioUnitBaseParametersTest, WithoutAUnitThereAreNoParameters)
{
    const auto fresh = AudioUnitBase::make(engine);
    fresh->makeParameters();
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::makeParameters(): ERROR: The audio unit (nil) is nil."});
    EXPECT_EQ(fresh->parameterTree, nullptr);
}

TEST_F(AudioUnitBaseParametersTest, AUnitWithoutATreeIsToldAsAnError)
{
    component.plan.hasTree = false;
    const auto fresh = AudioUnitBase::make(engine);
    fresh->componentDescription = fakeComponent;
    fresh->create("Bare");
    EXPECT_EQ(
        console.take(),
        (Lines{"AudioUnitBase::makeParameters(): Retriving parameters from the audio unit (Bare): ",
               "AudioUnitBase::makeParameters(): ERROR: Calling up parameter tree from the audio unit (Bare) "
               "failed."}));
    EXPECT_TRUE(fresh->parameters.empty());
}

TEST_F(AudioUnitBaseParametersTest, AUnitWithoutAContextNamePrintsNil)
{
    component.unit->contextName.reset();
    wrapper->makeParameters();
    EXPECT_EQ(console.take(), parametersRead("nil"));
}

TEST_F(AudioUnitBaseParametersTest, SettingAnAddressChangesThatParameterAlone)
{
    wrapper->setParameter(7, 4.5F);
    EXPECT_EQ(value(0), 4.5F);
    EXPECT_EQ(value(1), 0.25F);
    EXPECT_EQ(wrapper->getParameter(7), 4.5F);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseParametersTest, SettingAnUnknownAddressLeavesAllValuesAlone)
{
    wrapper->setParameter(8, 4.5F);
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitBase::setParameter(): ERROR: The parameter address 8 is not there in Lead."});
    EXPECT_EQ(value(0), 1.0F);
    EXPECT_EQ(value(1), 0.25F);
}

TEST_F(AudioUnitBaseParametersTest, AnUnknownAddressReadsAsZero)
{
    EXPECT_EQ(wrapper->getParameter(8), 0.0F);
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitBase::getParameter(): ERROR: The parameter address 8 is not therein Lead."});
}

TEST_F(AudioUnitBaseParametersTest, WithoutATreeNothingIsSetAndZeroIsRead)
{
    const auto fresh = AudioUnitBase::make(engine);
    fresh->setParameter(7, 4.5F);
    EXPECT_EQ(fresh->getParameter(7), 0.0F);
    EXPECT_EQ(console.take(),
              (Lines{"AudioUnitBase::setParameter(): ERROR: The parameter tree is not initialized.",
                     "AudioUnitBase::getParameter(): ERROR: The parameter tree is not initialized."}));
}

TEST_F(AudioUnitBaseParametersTest, ANegativeAddressStopsTheProgram)
{
    EXPECT_DEATH(wrapper->setParameter(-1, 4.5F), std::string(conversionMessage));
    EXPECT_DEATH(wrapper->getParameter(-1), std::string(conversionMessage));
}

TEST_F(AudioUnitBaseParametersTest, AChangeReachesTheDelegateBehindTheCallOnTheMainThread)
{
    wrapper->setParameter(9, 0.5F);
    EXPECT_EQ(listener->calls, Lines{});
    mainQueue().drain();
    EXPECT_EQ(listener->calls, Lines{"parameter of Lead: 9 is 0.5"});
}

TEST_F(AudioUnitBaseParametersTest, AChangeOnAnotherThreadIsHandedToTheMainThread)
{
    std::thread([this] { component.unit->parameterTree->allParameters[0]->setValue(2.0F); }).join();
    EXPECT_EQ(listener->calls, Lines{});
    mainQueue().drain();
    EXPECT_EQ(listener->calls, Lines{"parameter of Lead: 7 is 2.0"});
}

TEST_F(AudioUnitBaseParametersTest, ADelegateThatIsGoneWhenTheChangeArrivesHearsNothing)
{
    wrapper->setParameter(9, 0.5F);
    const std::weak_ptr<UnitListener> gone = listener;
    listener.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseParametersTest, AQueuedChangeKeepsTheWrapperUntilItIsTold)
{
    wrapper->setParameter(9, 0.5F);
    const std::weak_ptr<AudioUnitBase> held = wrapper;
    wrapper.reset();
    EXPECT_FALSE(held.expired());
    mainQueue().drain();
    EXPECT_TRUE(held.expired());
    EXPECT_EQ(listener->calls, Lines{"parameter of Lead: 9 is 0.5"});
}

TEST_F(AudioUnitBaseParametersTest, AChangeBehindTheEndOfTheWrapperIsAnError)
{
    wrapper.reset();
    component.unit->parameterTree->allParameters[0]->setValue(2.0F);
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::observer(): ERROR: Weak self is nil."});
    EXPECT_EQ(listener->calls, Lines{});
}

} // namespace
} // namespace volvelle::test
