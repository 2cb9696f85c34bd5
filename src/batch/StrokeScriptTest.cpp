#include "batch/StrokeScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "batch/NoWindow.h"
#include "foundation/ManualQueues.h"
#include "foundation/NotificationCenter.h"
#include "foundation/VirtualTime.h"

namespace trimora::batch {
namespace {

using cutengine::DragMode;
using cutengine::RKImageCutView;
using foundation::Result;
using ::testing::HasSubstr;

class StrokeScriptTest : public ::testing::Test {
 protected:
    StrokeScriptTest() {
        view.setViewSize({40, 30});
        view.setImage(cutengine::Picture::create(
            foundation::Bitmap::createFilled(400, 300, {9, 9, 9, 255}, foundation::AlphaMode::opaque)
                .value()));
        queues.settle();
    }

    static std::string complaint(const std::string& text) {
        std::istringstream lines(text);
        const Result<StrokeScript> script = StrokeScript::read(lines);
        return script ? "" : script.error().message;
    }
    void perform(const std::string& text) {
        std::istringstream lines(text);
        const Result<StrokeScript> script = StrokeScript::read(lines);
        ASSERT_TRUE(script) << script.error().message;
        script->perform(view, [this] { queues.settle(); });
    }
    /// The mask at a pixel, y-up from the bottom left.
    int maskAt(int x, int y) { return view.copyMaskPlane().pixel(x, 299 - y).alpha; }

    foundation::ManualQueueFactory queues;
    foundation::VirtualTime time;
    foundation::NotificationCenter notifications;
    NoWindow window;
    RKImageCutView view{{queues, time, notifications, std::nullopt}, window};
};

TEST_F(StrokeScriptTest, StrokeIsPaintedWhereTheViewHadIt) {
    perform(R"({"do":"view","size":[400,300]}
{"do":"slider","which":"eraserSize","value":30}

{"do":"stroke","points":[[100,50],[200,50]]}
)");
    EXPECT_EQ(maskAt(100, 50), 0);
    EXPECT_EQ(maskAt(150, 60), 0);
    EXPECT_EQ(maskAt(150, 70), 255);
    EXPECT_EQ(maskAt(100, 250), 255);
}

TEST_F(StrokeScriptTest, PlacesFollowTheViewsSize) {
    perform(R"({"do":"view","size":[800,600]}
{"do":"stroke","points":[[200,100]]})");
    EXPECT_EQ(maskAt(100, 50), 0);
    EXPECT_EQ(maskAt(107, 50), 255);  // the brush of 20 covers 10 picture points
}

TEST_F(StrokeScriptTest, MouseStepsMakeTheSameStroke) {
    perform(R"({"do":"view","size":[400,300]}
{"do":"mouse","type":"down","at":[100,50]}
{"do":"mouse","type":"drag","at":[200,50]}
{"do":"mouse","type":"up","at":[200,50]})");
    const auto mouse = view.copyMaskPlane();
    view.resetMask();
    perform(R"({"do":"view","size":[400,300]}
{"do":"stroke","points":[[100,50],[200,50]]})");
    EXPECT_TRUE(samePixels(mouse.view(), view.copyMaskPlane().view()));
    EXPECT_EQ(mouse.pixel(150, 249).alpha, 0);
}

TEST_F(StrokeScriptTest, PropertiesAndKeysTurnCuttingIntoRestoring) {
    perform(R"({"do":"view","size":[400,300]}
{"do":"stroke","points":[[100,50]]}
{"do":"modifiers","held":["command"]}
{"do":"key","code":34}
{"do":"modifiers","held":[]}
{"do":"stroke","points":[[105,50]]}
{"do":"set","property":"brushAlphaValue","value":0}
{"do":"stroke","points":[[300,200]]})");
    EXPECT_EQ(maskAt(100, 50), 255);
    EXPECT_EQ(maskAt(92, 50), 0);
    EXPECT_EQ(maskAt(300, 200), 0);
}

TEST_F(StrokeScriptTest, RightButtonMovesThePictureAndTheWheelZoomsIt) {
    perform(R"({"do":"view","size":[400,300]}
{"do":"mouse","type":"scroll","at":[200,150],"delta":[0,15]}
{"do":"stroke","points":[[200,150],[230,170]],"button":"right"}
{"do":"settle"}
{"do":"advance","seconds":2})");
    EXPECT_NEAR(view.transform().a, 1.3, 1e-6);
    EXPECT_NEAR(view.transform().tx, 230, 1e-6);
    EXPECT_NEAR(view.transform().ty, 170, 1e-6);
    EXPECT_EQ(maskAt(200, 150), 255);
}

TEST_F(StrokeScriptTest, LineThatCannotBeReadIsNamed) {
    EXPECT_THAT(complaint("{\"do\":\"settle\"}\n\nnonsense\n"), HasSubstr("line 3: "));
    EXPECT_THAT(complaint(R"({"do":"dance"})"), HasSubstr("line 1: "));
}

TEST_F(StrokeScriptTest, StepThatNeedsAWindowIsNamed) {
    const std::string size = "{\"do\":\"view\",\"size\":[400,300]}\n";
    EXPECT_EQ(complaint(size + R"({"do":"open","files":["a.png"]})"),
              "line 2: the step \"open\" needs the editor's window");
    EXPECT_EQ(complaint(size + R"({"do":"perform","on":"cutView","selector":"resetMask"})"),
              "line 2: the step \"perform\" needs the editor's window");
    EXPECT_EQ(complaint(size + R"({"do":"slider","which":"eraserSize","typed":"70"})"),
              "line 2: a text can be typed in the editor's window alone; give the value");
}

TEST_F(StrokeScriptTest, PlacesWithoutAViewAreRefused) {
    const std::string reason = "a \"view\" step must say first how large the view is that has these places";
    EXPECT_EQ(complaint(R"({"do":"stroke","points":[[1,1]]})"), "line 1: " + reason);
    EXPECT_EQ(complaint("{\"do\":\"settle\"}\n{\"do\":\"mouse\",\"type\":\"down\",\"at\":[1,1]}"),
              "line 2: " + reason);
}

TEST_F(StrokeScriptTest, EmptyScriptDoesNothing) {
    std::istringstream lines("\n  \n");
    const Result<StrokeScript> script = StrokeScript::read(lines);
    ASSERT_TRUE(script);
    EXPECT_TRUE(script->isEmpty());
}

}  // namespace
}  // namespace trimora::batch
