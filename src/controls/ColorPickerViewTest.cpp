#include "controls/ColorPickerView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>

#include "controls/ControlNotifications.h"
#include "controls/ControlsForTests.h"
#include "controls/Metrics.h"
#include "controls/TopBarButton.h"
#include "testing/Seed.h"

namespace trimora::controls {
namespace {

using cutengine::Colour;
using foundation::Point;

class ColorPickerViewTest : public ::testing::Test, public ColorPickerViewDelegate {
 protected:
    ColorPickerViewTest() {
        picker.setColorDelegate(this);
        window.hold(picker, picker.sizeHint());
        world.settle();
        reported.clear();
    }

    void ColorPickerDidSelectNSColor(const Colour& color) override { reported.push_back(color); }

    /// In the toolkit's coordinates of an area, from shares of it counted from the bottom left.
    static QPoint place(const ColorArea& area, double x, double y) {
        return {static_cast<int>(x * area.width()), static_cast<int>((1 - y) * area.height())};
    }

    VirtualWorld world;
    TestWindow window;
    ColorPickerView picker{world.context()};
    ColorArea& hues = picker.mainColorSelectorView();
    ColorArea& shades = picker.secondColorSelectorView();
    QLineEdit& hex = *picker.findChild<QLineEdit*>();
    std::vector<Colour> reported;
};

TEST_F(ColorPickerViewTest, TheHueStripStartsAndEndsInRed) {
    for (const double y : {0.0, hues.height() - 1.0}) {
        const Colour end = hues.colorOfPoint({3, y});
        EXPECT_EQ(end.red, 1);
        EXPECT_LT(end.green + end.blue, 0.05);
        EXPECT_EQ(end.alpha, 1);
    }
    const Colour middle = hues.colorOfPoint({3, hues.height() / 2.0});
    EXPECT_LT(middle.red, 0.05);
    EXPECT_GT(middle.green, 0.95);
    EXPECT_GT(middle.blue, 0.95);
}

TEST_F(ColorPickerViewTest, ReadsWhatIsPainted) {
    picker.secondPickerPressGesture({30, 50});
    const Point at{shades.markerFrame().x, shades.markerFrame().y};
    shades.setMarkerCentre({-50, -50});  // out of the way of the screenshot
    const QColor shown = shades.grab().toImage().pixelColor(static_cast<int>(at.x),
                                                            shades.height() - 1 - static_cast<int>(at.y));
    EXPECT_EQ(hexText(picker.selectedColor()), shown.name().toUpper());
}

TEST_F(ColorPickerViewTest, TheFieldRunsFromBlackToTheHueWithAWashOfWhite) {
    const Colour low = shades.colorOfPoint({83, 0});
    EXPECT_LT(low.red + low.green + low.blue, 0.2);
    const Colour white = shades.colorOfPoint({0, 83});
    EXPECT_GT(white.red, 0.98);
    EXPECT_GT(white.green, 0.95);
    const Colour pure = shades.colorOfPoint({83, 68});
    EXPECT_GT(pure.red, 0.98);
    EXPECT_LT(pure.green, 0.2);
}

TEST_F(ColorPickerViewTest, APressReportsTheColourUnderTheMarkersCorner) {
    window.click(shades, place(shades, 0.5, 0.5));
    ASSERT_EQ(reported.size(), 1U);
    const double corner = 42 - 0.5 * metrics::kShadeMarker;
    EXPECT_EQ(shades.markerFrame().x, corner);
    EXPECT_EQ(shades.markerFrame().y, corner);
    EXPECT_EQ(reported[0], shades.colorOfPoint({corner, corner}));
    EXPECT_EQ(reported[0], picker.selectedColor());
}

TEST_F(ColorPickerViewTest, AHuePressReportsTheShadeOfTheHueBefore) {
    const Colour before = shades.colorAtMarker();
    window.press(hues, place(hues, 0.5, 0.5));
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(reported[0], before);
    world.settle();
    window.release(hues, place(hues, 0.5, 0.5));
    const Colour after = shades.colorAtMarker();
    EXPECT_NE(after, before);
    window.click(shades, place(shades, 0.9, 0.9));
    ASSERT_EQ(reported.size(), 2U);
    EXPECT_GT(reported[1].blue, reported[1].red);
}

TEST_F(ColorPickerViewTest, APanAloneReportsNothing) {
    picker.mainPickerPanGesture({2, 40});
    picker.secondPickerPanGesture({-30, 200});
    EXPECT_TRUE(reported.empty());
    EXPECT_EQ(shades.markerFrame().centre(), (Point{-30, 200}));
}

TEST_F(ColorPickerViewTest, ADragReportsWhereItBeginsAndWhereItEndsButNotOnTheWay) {
    window.press(shades, place(shades, 0.2, 0.2));
    window.moveTo(shades, place(shades, 0.5, 0.5));
    window.moveTo(shades, place(shades, 0.7, 0.7));
    EXPECT_EQ(reported.size(), 1U);
    window.release(shades, place(shades, 0.7, 0.7));
    ASSERT_EQ(reported.size(), 2U);
    EXPECT_EQ(reported[1], shades.colorAtMarker());
}

TEST_F(ColorPickerViewTest, APressAtOrBeyondTheEndsKeepsTheMarkerInside) {
    picker.mainPickerPressGesture({400, 400});
    EXPECT_EQ(hues.markerFrame().centre(),
              (Point{hues.width() / 2.0, hues.height() - metrics::kHueMarker / 2.0}));
    picker.mainPickerPressGesture({-400, 0});
    EXPECT_EQ(hues.markerFrame().centre(), (Point{hues.width() / 2.0, metrics::kHueMarker / 2.0}));
    picker.secondPickerPressGesture({-1, 84});
    EXPECT_EQ(shades.markerFrame().centre(), (Point{4, 80}));
}

TEST_F(ColorPickerViewTest, EveryReportedColourIsOpaque) {
    std::mt19937_64 random = testing::seededGenerator();
    std::uniform_real_distribution<double> anywhere(-20, 104);
    for (int i = 0; i < 200; ++i) {
        picker.mainPickerPressGesture({anywhere(random), anywhere(random)});
        world.settle();
        picker.secondPickerPressGesture({anywhere(random), anywhere(random)});
    }
    ASSERT_EQ(reported.size(), 400U);
    for (const Colour& colour : reported)
        EXPECT_EQ(colour.alpha, 1);
}

TEST(ColorPickerViewStart, ReportsAnOpaqueColourThatIsWhatTheFieldShowedBeforeItsShadesWereThere) {
    class Listener final : public ColorPickerViewDelegate {
     public:
        void ColorPickerDidSelectNSColor(const Colour& color) override { colors.push_back(color); }
        std::vector<Colour> colors;
    } listener;
    VirtualWorld world;
    ColorPickerView picker(world.context());
    picker.setColorDelegate(&listener);
    EXPECT_TRUE(listener.colors.empty());
    world.settle();
    ASSERT_EQ(listener.colors.size(), 2U);
    EXPECT_EQ(listener.colors[0], (Colour{0, 0, 0, 1}));
}

TEST(ColorPickerViewStart, APickerThatIsGoneBeforeItStartedIsMissedByNobody) {
    VirtualWorld world;
    { const ColorPickerView picker(world.context()); }
    world.settle();
}

TEST_F(ColorPickerViewTest, ClickColorReportsThePresentColourAgain) {
    picker.secondPickerPressGesture({30, 50});
    world.notifications.post(notifications::kClickColor);
    ASSERT_EQ(reported.size(), 2U);
    EXPECT_EQ(reported[1], reported[0]);
}

TEST_F(ColorPickerViewTest, ArrowKeysMoveTheMarkersAndReport) {
    picker.secondPickerPressGesture({40, 40});
    reported.clear();
    shades.setFocus();
    QTest::keyClick(&shades, Qt::Key_Up);
    QTest::keyClick(&shades, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(shades.markerFrame().centre(), (Point{30, 41}));
    EXPECT_EQ(reported.size(), 2U);
    hues.setFocus();
    const double before = hues.markerFrame().y;
    QTest::keyClick(&hues, Qt::Key_Up);
    EXPECT_EQ(hues.markerFrame().y, before + 1);
    EXPECT_EQ(reported.size(), 3U);
}

TEST_F(ColorPickerViewTest, ATypedColourIsReportedExactlyAndMovesTheMarkersNearIt) {
    hex.setFocus();
    hex.selectAll();
    QTest::keyClicks(&hex, "336699");
    QTest::keyClick(&hex, Qt::Key_Return);
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(hexText(reported[0]), "#336699");
    EXPECT_EQ(hex.text(), "#336699");
    const Colour near = shades.colorAtMarker();
    EXPECT_NEAR(near.red, 0x33 / 255.0, 0.05);
    EXPECT_NEAR(near.green, 0x66 / 255.0, 0.05);
    EXPECT_NEAR(near.blue, 0x99 / 255.0, 0.05);
    world.settle();
    world.notifications.post(notifications::kClickColor);
    EXPECT_EQ(hexText(reported.back()), "#336699");
    picker.secondPickerPressGesture({10, 10});
    EXPECT_NE(hexText(reported.back()), "#336699");
}

TEST_F(ColorPickerViewTest, ATypedGreyLeavesTheHueWhereItIs) {
    picker.mainPickerPressGesture({5, 40});
    world.settle();
    const foundation::Rect before = hues.markerFrame();
    picker.chooseColor({0.5, 0.5, 0.5, 1});
    EXPECT_EQ(hues.markerFrame(), before);
    EXPECT_EQ(reported.back(), (Colour{0.5, 0.5, 0.5, 1}));
}

TEST_F(ColorPickerViewTest, TextThatIsNoColourGivesWayToThePresentOne) {
    const QString before = hex.text();
    hex.setFocus();
    hex.selectAll();
    QTest::keyClicks(&hex, "red");
    QTest::keyClick(&hex, Qt::Key_Return);
    EXPECT_EQ(hex.text(), before);
    EXPECT_TRUE(reported.empty());
}

TEST_F(ColorPickerViewTest, TheEyedropperReportsTheColourThatItTook) {
    auto& button = *picker.findChild<TopBarButton*>();
    EXPECT_FALSE(button.isVisible());
    std::function<void(std::optional<Colour>)> taken;
    picker.setEyedropper([&](auto callBack) { taken = std::move(callBack); });
    QCoreApplication::processEvents();
    ASSERT_TRUE(button.isVisible());
    window.click(button, {10, 10});
    ASSERT_TRUE(taken);
    taken(std::nullopt);
    EXPECT_TRUE(reported.empty());
    taken(Colour{0, 1, 0, 1});
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(reported[0], (Colour{0, 1, 0, 1}));
}

TEST_F(ColorPickerViewTest, AScreenReaderFindsAStripToSetAndTheColourInBothAreas) {
    QAccessibleInterface* const strip = QAccessible::queryAccessibleInterface(&hues);
    QAccessibleInterface* const field = QAccessible::queryAccessibleInterface(&shades);
    EXPECT_EQ(strip->role(), QAccessible::Slider);
    EXPECT_EQ(field->role(), QAccessible::ColorChooser);
    EXPECT_EQ(strip->text(QAccessible::Name), "Hue");
    EXPECT_EQ(field->text(QAccessible::Name), "Shade");
    EXPECT_EQ(field->text(QAccessible::Value), hexText(shades.colorAtMarker()));
    ASSERT_NE(strip->valueInterface(), nullptr);
    EXPECT_EQ(field->valueInterface(), nullptr);
    strip->valueInterface()->setCurrentValue(40.0);
    EXPECT_EQ(strip->valueInterface()->currentValue().toDouble(), 40);
    EXPECT_EQ(strip->valueInterface()->maximumValue().toDouble(), 80);
    EXPECT_EQ(reported.size(), 1U);
}

TEST_F(ColorPickerViewTest, TabReachesEveryPartInOrder) {
    picker.setEyedropper([](auto) {});
    QCoreApplication::processEvents();
    std::vector<QWidget*> reached;
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(&window, Qt::Key_Tab);
        reached.push_back(QApplication::focusWidget());
    }
    EXPECT_EQ(reached, (std::vector<QWidget*>{&hues, &shades, &hex, picker.findChild<TopBarButton*>()}));
}

TEST(HexText, ReadsAndWritesColours) {
    EXPECT_EQ(hexText({1, 0.5, 0, 1}), "#FF8000");
    EXPECT_EQ(hexText({2, -1, 0, 1}), "#FF0000");
    EXPECT_EQ(colourOfHexText(" #ff0033 "), (Colour{1, 0, 0.2, 1}));
    EXPECT_EQ(colourOfHexText("FF0033"), (Colour{1, 0, 0.2, 1}));
    for (const char* text : {"", "#", "#FFF", "#GG0000", "#FF00331"})
        EXPECT_EQ(colourOfHexText(text), std::nullopt) << text;
}

TEST(ColorPickerGradients, RunInTheirFourDirections) {
    QWidget view;
    view.resize(20, 10);
    const auto line = [&](int direction) {
        const auto layer = ColorPickerView::gradientLayer(view, {Qt::black, Qt::white}, direction);
        EXPECT_EQ(layer->frame(), (foundation::Rect{0, 0, 20, 10}));
        return std::pair(layer->startPoint, layer->endPoint);
    };
    EXPECT_EQ(line(0), std::pair(Point{0, 0}, Point{0, 1}));
    EXPECT_EQ(line(1), std::pair(Point{0, 0.5}, Point{1, 0.5}));
    EXPECT_EQ(line(2), std::pair(Point{0, 1}, Point{1, 0.5}));
    EXPECT_EQ(line(3), std::pair(Point{0, 0}, Point{0, 0.8}));
}

}  // namespace
}  // namespace trimora::controls
