#include "util/ObjectRuntime.h"

#include <gtest/gtest.h>

#include <vector>

#include "testing/CapturedLog.h"

namespace trimora::util {
namespace {

/// A class with a superclass of its own: one method with an argument, one without.
class Editor : public RuntimeObject {
 public:
    explicit Editor(const RuntimeClassPtr& record) : RuntimeObject(record) {}

    static RuntimeClassPtr makeClass() {
        const RuntimeClassPtr base = RuntimeClass::create("Screen");
        base->on("reset", &Editor::reset);
        RuntimeClassPtr record = RuntimeClass::create("Editor", base);
        record->on("save_pressed:", &Editor::save_pressed).on("back", &Editor::back);
        return record;
    }

    void save_pressed(const std::any& sender) {
        calls.push_back("save " + (sender.has_value() ? std::any_cast<std::string>(sender) : "nobody"));
    }
    void back() { calls.emplace_back("back"); }
    void reset() { calls.emplace_back("reset"); }

    std::vector<std::string> calls;
};

class ObjectRuntimeTest : public ::testing::Test {
 protected:
    static Method saying(std::string answer) {
        return [answer = std::move(answer)](RuntimeObject&, const std::any&) { return std::any(answer); };
    }
    static std::string answer(RuntimeObject& object, std::string_view selector) {
        const std::any said = object.performSelector(selector);
        return said.has_value() ? std::any_cast<std::string>(said) : "";
    }

    RuntimeClassPtr class_ = Editor::makeClass();
    Editor editor_{class_};
    Editor other_{class_};
};

TEST_F(ObjectRuntimeTest, AMessageReachesTheMemberFunctionWithItsArgument) {
    editor_.performSelector("save_pressed:", std::string("menu"));
    editor_.performSelector("save_pressed:");
    editor_.performSelector("back");
    EXPECT_EQ(editor_.calls, (std::vector<std::string>{"save menu", "save nobody", "back"}));
}

TEST_F(ObjectRuntimeTest, MethodsOfTheSuperclassAreInherited) {
    EXPECT_TRUE(editor_.respondsToSelector("reset"));
    editor_.performSelector("reset");
    EXPECT_EQ(editor_.calls, std::vector<std::string>{"reset"});
}

TEST_F(ObjectRuntimeTest, AnUnknownSelectorIsAnErrorLineAndNoAnswer) {
    testing::expectErrorLines();
    const testing::CapturedLog log;
    EXPECT_FALSE(editor_.respondsToSelector("fly:"));
    EXPECT_FALSE(editor_.performSelector("fly:").has_value());
    EXPECT_TRUE(log.contains("Editor does not respond to fly:"));
}

TEST_F(ObjectRuntimeTest, OverridingOnOneObjectLeavesTheOthersAlone) {
    editor_.overrideSelector("back", saying("mine"));
    EXPECT_EQ(answer(editor_, "back"), "mine");
    other_.performSelector("back");
    EXPECT_EQ(other_.calls, std::vector<std::string>{"back"});
    EXPECT_EQ(other_.runtimeClass(), class_);
}

TEST_F(ObjectRuntimeTest, OverridesNestSubclassesNumbered666And667And668) {
    editor_.overrideSelector("back", saying("first"));
    EXPECT_EQ(editor_.runtimeClass()->name(), "Editor_$666");
    EXPECT_EQ(editor_.runtimeClass()->superclass(), class_);
    const RuntimeClassPtr first = editor_.runtimeClass();

    editor_.overrideSelector("back", saying("second"));
    EXPECT_EQ(editor_.runtimeClass()->name(), "Editor_$667");
    EXPECT_EQ(editor_.runtimeClass()->superclass(), first);
    const RuntimeClassPtr second = editor_.runtimeClass();

    editor_.overrideSelector("reset", saying("third"));
    EXPECT_EQ(editor_.runtimeClass()->name(), "Editor_$668");
    EXPECT_EQ(editor_.runtimeClass()->superclass(), second);

    EXPECT_EQ(answer(editor_, "back"), "second");
    EXPECT_EQ(answer(editor_, "reset"), "third");
}

TEST_F(ObjectRuntimeTest, TheObjectKnowsItsFirstClassAndItsCounter) {
    EXPECT_FALSE(editor_.variable("RKNimbrel_BlackMagic_rootClass").has_value());
    editor_.overrideSelector("back", saying("a"));
    editor_.overrideSelector("back", saying("b"));
    EXPECT_TRUE(editor_.runtimeClass()->hasVariable("RKNimbrel_BlackMagic_rootClass"));
    EXPECT_EQ(std::any_cast<RuntimeClassPtr>(editor_.variable("RKNimbrel_BlackMagic_rootClass")), class_);
    EXPECT_EQ(std::any_cast<int>(editor_.variable("RKNimbrel_BlackMagic_subclassCounter")), 667);
    EXPECT_FALSE(class_->hasVariable("RKNimbrel_BlackMagic_rootClass"));
}

TEST_F(ObjectRuntimeTest, OverridingWhatAnObjectDoesNotRespondToAddsItToTheClass) {
    editor_.overrideSelector("fly", saying("wings"));
    EXPECT_EQ(editor_.runtimeClass(), class_);
    EXPECT_EQ(answer(other_, "fly"), "wings");
}

TEST_F(ObjectRuntimeTest, OverridingOnTheClassReachesEveryObjectWithoutAMethodOfItsOwn) {
    editor_.overrideSelector("back", saying("mine"));
    class_->overrideSelector("back", saying("ours"));
    EXPECT_EQ(answer(editor_, "back"), "mine");
    EXPECT_EQ(answer(other_, "back"), "ours");
}

TEST_F(ObjectRuntimeTest, MakeSelectorAddsOnlyWhatIsMissing) {
    EXPECT_EQ(editor_.makeSelector("fly:", saying("wings")), "fly:");
    EXPECT_EQ(answer(other_, "fly:"), "wings");
    EXPECT_EQ(editor_.makeSelector("fly:", saying("rocket")), "fly:");
    EXPECT_EQ(answer(editor_, "fly:"), "wings");
}

TEST_F(ObjectRuntimeTest, AMethodMayReplaceItselfWhileItRuns) {
    const auto twice = std::make_shared<std::string>("before");
    class_->overrideSelector("back", [this, twice](RuntimeObject&, const std::any&) {
        class_->overrideSelector("back", saying("after"));
        return std::any(*twice);
    });
    EXPECT_EQ(answer(editor_, "back"), "before");
    EXPECT_EQ(answer(editor_, "back"), "after");
}

TEST_F(ObjectRuntimeTest, AssociatedValuesStayWithTheirObjectUntilTheyAreTakenOff) {
    editor_.setAssociatedValue("mode", std::string("decimal"));
    EXPECT_EQ(std::any_cast<std::string>(editor_.associatedValue("mode")), "decimal");
    EXPECT_FALSE(other_.associatedValue("mode").has_value());
    editor_.setAssociatedValue("mode", {});
    EXPECT_FALSE(editor_.associatedValue("mode").has_value());
}

}  // namespace
}  // namespace trimora::util
