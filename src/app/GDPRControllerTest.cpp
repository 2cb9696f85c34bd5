#include "app/GDPRController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QWidget>
#include <vector>

#include "analytics/PortsForTests.h"
#include "app/GdprSheet.h"
#include "app/UsageDataDialog.h"
#include "controls/AppStyle.h"

namespace trimora::app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Answer = GdprConsent::Answer;

/// Writes down what it is told to do.
class FakeRecording final : public UsageRecording {
 public:
    [[nodiscard]] std::optional<std::string> destination() const override { return address; }
    void record() override { calls.emplace_back("record"); }
    void allowSending() override { calls.emplace_back("allowSending"); }
    void stopAndErase() override {
        calls.emplace_back("stopAndErase");
        stored.clear();
    }
    void erase() override {
        calls.emplace_back("erase");
        stored.clear();
    }
    void describe(analytics::EventForm form, std::function<void(std::string)> tell) override {
        tell(stored.empty() ? "" : (form == analytics::EventForm::asStored ? "bytes of " : "") + stored);
    }

    std::optional<std::string> address = "https://usage.example.org/stat/4";
    std::string stored = "a session";
    std::vector<std::string> calls;
};

class GDPRControllerTest : public ::testing::Test {
 protected:
    GDPRControllerTest() {
        controls::applyAppStyle();
        window_.resize(800, 600);
    }
    void start() {
        controller_.start();
        window_.show();
        window_.activateWindow();
        settle();
    }
    static void settle() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    static void press(QWidget& on, Qt::Key key) {
        QTest::keyClick(&on, key);
        settle();
    }
    /// As by its key: the words beside a box may be shorter than their place.
    static void choose(QAbstractButton& button) {
        button.click();
        settle();
    }
    void click(QAbstractButton& button) {
        QTest::mouseClick(&button, Qt::LeftButton, {}, button.rect().center());
        settle();
    }

    analytics::MemoryUserDefaults defaults_;
    FakeRecording recording_;
    GdprConsent consent_{defaults_, recording_};
    QWidget window_;
    GDPRController controller_{{consent_, [this] { return &window_; }, "file:///privacy"}};
};

TEST_F(GDPRControllerTest, QuestionComesAfterTheFirstPaintAndLeavesTheWindowUsable) {
    controller_.start();
    settle();
    EXPECT_EQ(controller_.sheet(), nullptr);
    start();
    ASSERT_NE(controller_.sheet(), nullptr);
    EXPECT_TRUE(controller_.sheet()->isVisible());
    EXPECT_EQ(controller_.sheet()->parentWidget(), &window_);
    EXPECT_TRUE(window_.isEnabled());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(consent_.answer(), Answer::none);
}

TEST_F(GDPRControllerTest, YesAndNoAreAlikeAndNeitherIsChosen) {
    start();
    const QPushButton& yes = controller_.sheet()->yes();
    const QPushButton& no = controller_.sheet()->no();
    EXPECT_EQ(yes.size(), no.size());
    EXPECT_EQ(yes.y(), no.y());
    EXPECT_EQ(yes.font(), no.font());
    EXPECT_EQ(yes.palette(), no.palette());
    for (const QPushButton* button : {&yes, &no}) {
        EXPECT_FALSE(button->isDefault());
        EXPECT_FALSE(button->autoDefault());
        EXPECT_FALSE(button->hasFocus());
    }
    EXPECT_TRUE(controller_.sheet()->hasFocus());
    press(*controller_.sheet(), Qt::Key_Return);
    press(*controller_.sheet(), Qt::Key_Space);
    EXPECT_NE(controller_.sheet(), nullptr);
    EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(GDPRControllerTest, EscapeLeavesTheQuestionForTheNextStart) {
    start();
    press(*controller_.sheet(), Qt::Key_Escape);
    EXPECT_EQ(controller_.sheet(), nullptr);
    EXPECT_EQ(consent_.answer(), Answer::none);
    EXPECT_THAT(recording_.calls, IsEmpty());
    controller_.start();
    window_.update();
    settle();
    EXPECT_NE(controller_.sheet(), nullptr);
}

TEST_F(GDPRControllerTest, YesIsKeptAndLetsTheRecordBeSent) {
    start();
    click(controller_.sheet()->yes());
    EXPECT_EQ(controller_.sheet(), nullptr);
    EXPECT_THAT(recording_.calls, ElementsAre("record", "allowSending"));
    EXPECT_EQ(defaults_.synchronized, 1);
    EXPECT_EQ(GdprConsent(defaults_, recording_).answer(), Answer::yes);
    controller_.start();
    window_.update();
    settle();
    EXPECT_EQ(controller_.sheet(), nullptr);
}

TEST_F(GDPRControllerTest, NoIsKeptAndErasesTheRecord) {
    start();
    press(*controller_.sheet(), Qt::Key_Tab);
    press(controller_.sheet()->yes(), Qt::Key_Tab);
    EXPECT_TRUE(controller_.sheet()->no().hasFocus());
    press(controller_.sheet()->no(), Qt::Key_Space);
    EXPECT_THAT(recording_.calls, ElementsAre("stopAndErase"));
    EXPECT_EQ(consent_.answer(), Answer::no);
}

TEST_F(GDPRControllerTest, NobodyIsAskedWhereNothingCanBeSent) {
    recording_.address.reset();
    start();
    EXPECT_EQ(controller_.sheet(), nullptr);
}

TEST_F(GDPRControllerTest, WindowThatGoesBeforeItsFirstPaintIsNotAskedIn) {
    QWidget window;
    GDPRController controller({consent_, [&] { return &window; }, ""});
    controller.start();
    settle();
    EXPECT_EQ(controller.sheet(), nullptr);
    GDPRController windowless({consent_, [] { return nullptr; }, ""});
    windowless.start();
    EXPECT_EQ(windowless.sheet(), nullptr);
}

TEST_F(GDPRControllerTest, SheetStaysInTheMiddleOfItsWindow) {
    start();
    window_.resize(400, 500);
    settle();
    const QRect sheet = controller_.sheet()->geometry();
    EXPECT_TRUE(window_.rect().contains(sheet));
    EXPECT_EQ(sheet.center().x(), window_.rect().center().x());
    EXPECT_GE(controller_.sheet()->height(), controller_.sheet()->heightForWidth(sheet.width()));
}

TEST_F(GDPRControllerTest, SheetHangsBelowWhatIsToStayInReach) {
    GDPRController controller({consent_, [this] { return &window_; }, "", [] { return 77; }});
    controller.start();
    window_.show();
    settle();
    ASSERT_NE(controller.sheet(), nullptr);
    EXPECT_EQ(controller.sheet()->y(), 77);
}

TEST_F(GDPRControllerTest, SheetNamesTheHostItWouldSendTo) {
    EXPECT_EQ(GdprSheet::hostOf("https://usage.example.org/stat/4"), "usage.example.org");
    EXPECT_EQ(GdprSheet::hostOf("somewhere"), "somewhere");
}

TEST_F(GDPRControllerTest, AnswerOfAnEarlierRunIsCarriedOutAtTheStart) {
    consent_.begin();
    EXPECT_THAT(recording_.calls, ElementsAre("record"));
    recording_.calls.clear();
    defaults_.values["usage_data_consent"] = "yes";
    consent_.begin();
    EXPECT_THAT(recording_.calls, ElementsAre("record", "allowSending"));
    recording_.calls.clear();
    defaults_.values["usage_data_consent"] = "no";
    consent_.begin();
    consent_.give(Answer::none);
    EXPECT_THAT(recording_.calls, IsEmpty());
    defaults_.values["usage_data_consent"] = "perhaps";
    EXPECT_EQ(consent_.answer(), Answer::none);
}

TEST_F(GDPRControllerTest, UsageDataShowsAnswerAndRecordAndBothCanBeChanged) {
    start();
    controller_.showUsageData();
    UsageDataDialog* const dialog = controller_.usageData();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->isModal());
    EXPECT_FALSE(dialog->yes().isChecked() || dialog->no().isChecked());
    EXPECT_TRUE(dialog->yes().text().contains("usage.example.org"));
    EXPECT_EQ(dialog->shownText(), "a session");
    choose(dialog->asStored());
    EXPECT_EQ(dialog->shownText(), "bytes of a session");
    choose(dialog->deleteButton());
    EXPECT_EQ(dialog->shownText(), "Nothing.");
    choose(dialog->yes());
    EXPECT_EQ(controller_.sheet(), nullptr);  // answered
    choose(dialog->no());
    EXPECT_EQ(consent_.answer(), Answer::no);
    EXPECT_THAT(recording_.calls, ElementsAre("erase", "record", "allowSending", "stopAndErase"));
    controller_.showUsageData();
    EXPECT_EQ(controller_.usageData(), dialog);
    dialog->close();
    settle();
    EXPECT_EQ(controller_.usageData(), nullptr);
    controller_.showUsageData();
    EXPECT_TRUE(controller_.usageData()->no().isChecked());
}

TEST_F(GDPRControllerTest, UsageDataSaysWhereNothingCanBeSent) {
    recording_.address.reset();
    start();
    controller_.showUsageData();
    EXPECT_TRUE(controller_.usageData()->yes().text().contains("nowhere to send"));
}

TEST_F(GDPRControllerTest, KnowsThePrivacyPolicy) {
    EXPECT_EQ(controller_.getPrivacyUrl(), "file:///privacy");
}

}  // namespace
}  // namespace trimora::app
