#include "controls/ControlGallery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAnimationDriver>
#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cstdlib>
#include <set>
#include <vector>

#include "controls/AppStyle.h"
#include "controls/ControlsForTests.h"
#include "controls/ReferencePictureForTests.h"

namespace trimora::controls {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/// The picture with one part of it laid over another, in pixels.
QImage withPart(const QImage& picture, const QRect& to, const QRect& from) {
    QImage changed = picture;
    changed.setDevicePixelRatio(1);
    const QImage part = changed.copy(from);
    QPainter(&changed).drawImage(to, part);
    return changed;
}

/// Whether the Tab key stops here.
bool isTabStop(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0 &&
           widget.focusProxy() == nullptr;
}

QList<QWidget*> withParts(QWidget& control) {
    QList<QWidget*> all = control.findChildren<QWidget*>();
    all.append(&control);
    return all;
}

/// A control as a screen reader tells it: name, role, and its value where it has one.
std::string described(QWidget& widget) {
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&widget);
    std::string told =
        access->text(QAccessible::Name).toStdString() + ": " + qAccessibleRoleString(access->role());
    if (const QString text = access->text(QAccessible::Value); !text.isEmpty())
        told += " '" + text.toStdString() + "'";
    if (auto* const value = access->valueInterface())
        told += " " + value->currentValue().toString().toStdString() + " of " +
                value->minimumValue().toString().toStdString() + " to " +
                value->maximumValue().toString().toStdString();
    if (access->state().checkable)
        told += access->state().checked ? " checked" : " not checked";
    return told;
}

/// Time stands still for the toolkit's own animations too: the turning wheel of a blocked panel.
class StillAnimations final : public QAnimationDriver {
 public:
    StillAnimations() { install(); }
    ~StillAnimations() override { uninstall(); }
    [[nodiscard]] qint64 elapsed() const override { return 0; }
};

/// The gallery in a window of its own, its states on.
class ControlGalleryTest : public ::testing::Test {
 protected:
    ControlGalleryTest() {
        QApplication::setCursorFlashTime(0);
        gallery.show();
        gallery.activateWindow();
        QTest::mouseMove(gallery.windowHandle(), QPoint(1, 1));
        world.advance(1);
    }

    [[nodiscard]] const ControlGallery::Cell& cell(const std::string& name) const {
        for (const auto& each : gallery.cells()) {
            if (each.name == name)
                return each;
        }
        throw std::invalid_argument(name);
    }
    [[nodiscard]] QRect place(const ControlGallery::Cell& each) const {
        return {each.widget->mapTo(&gallery, QPoint()), each.widget->size()};
    }
    [[nodiscard]] QRect pixels(const std::string& name, double scale) const {
        const QRect points = place(cell(name));
        return QRectF(points.topLeft() * scale, points.size() * scale).toRect();
    }
    /// The names of the cells in which the blocks lie; "elsewhere" for those beside all of them.
    [[nodiscard]] std::set<std::string> namesAt(const std::vector<QRect>& blocks, double scale) const {
        std::set<std::string> names;
        for (const QRect& block : blocks) {
            const QPoint middle = (QPointF(block.center()) / scale).toPoint();
            const auto holds = [&](const auto& each) { return place(each).contains(middle); };
            const auto at = std::find_if(gallery.cells().begin(), gallery.cells().end(), holds);
            names.insert(at == gallery.cells().end() ? "elsewhere" : at->name);
        }
        return names;
    }
    /// Everything that takes the keyboard now.
    [[nodiscard]] std::set<const QWidget*> reachable() const {
        std::set<const QWidget*> found;
        for (const QWidget* widget : gallery.findChildren<QWidget*>()) {
            if (isTabStop(*widget))
                found.insert(widget);
        }
        return found;
    }

    struct Style {
        Style() { applyAppStyle(); }
    };
    Style style;  // before the first widget, as in the program
    StillAnimations still;
    VirtualWorld world;
    std::vector<std::string> reports;
    ControlGallery gallery{world.context(), [this](const std::string& line) { reports.push_back(line); }};
};

/// The kept pictures are in the documents, for people to look at. tools/accept-pictures renews them.
TEST_F(ControlGalleryTest, LooksAsItIsKept) {
    const QImage shown = gallery.grab().toImage();
    const double scale = shown.devicePixelRatio();
    const QString name = scale == 1 ? QStringLiteral("gallery") : QStringLiteral("gallery@%1x").arg(scale);
    const QString kept = QStringLiteral(TRIMORA_KEPT_PICTURES "/%1.png").arg(name);
    if (std::getenv("TRIMORA_ACCEPT_PICTURES") != nullptr) {
        ASSERT_TRUE(shown.save(kept)) << kept.toStdString();
    }
    const std::vector<QRect> found = differences(shown, QImage(kept), scale);
    if (found.empty())
        return;
    const QString left = name + QStringLiteral("-shown.png");
    EXPECT_TRUE(shown.save(left));
    const QRect& first = found.front();
    ADD_FAILURE() << found.size() << " blocks differ from the kept picture, the first at " << first.x()
                  << ", " << first.y() << ", in: " << ::testing::PrintToString(namesAt(found, scale))
                  << "; see " << left.toStdString()
                  << ", and tools/accept-pictures if that is as it should be";
}

TEST_F(ControlGalleryTest, AComparisonForgivesAPixelsShiftAndFindsALostFocusRing) {
    const QImage shown = gallery.grab().toImage();
    const double scale = shown.devicePixelRatio();
    EXPECT_THAT(differences(shown, shown, scale), IsEmpty());

    const QRect text = pixels("TopBarButton, rest", scale);
    EXPECT_THAT(differences(withPart(shown, text.translated(1, 0), text), shown, scale), IsEmpty());

    const QImage lost =
        withPart(shown, pixels("KrugButton, keyboard", scale), pixels("KrugButton, rest", scale));
    EXPECT_THAT(namesAt(differences(lost, shown, scale), scale), ElementsAre("KrugButton, keyboard"));
}

TEST_F(ControlGalleryTest, EveryStateLooksUnlikeRest) {
    QImage rest;
    int compared = 0;
    for (const auto& each : gallery.cells()) {
        const QImage shown = each.widget->grab().toImage();
        if (each.name.ends_with(", rest")) {
            rest = shown;
            continue;
        }
        EXPECT_NE(shown, rest) << each.name;
        ++compared;
    }
    EXPECT_EQ(compared, 17 * 4 + 1 + 2);
}

TEST_F(ControlGalleryTest, TabReachesEveryControlOnceAndEachShowsIt) {
    const std::set<const QWidget*> expected = reachable();
    std::set<const QWidget*> reached;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        QTest::keyClick(&gallery, Qt::Key_Tab);
        QWidget* const now = QApplication::focusWidget();
        ASSERT_NE(now, nullptr);
        EXPECT_TRUE(reached.insert(now).second) << now->accessibleName().toStdString() << " comes twice";
        const QImage with = now->grab().toImage();
        now->clearFocus();
        EXPECT_NE(now->grab().toImage(), with) << now->accessibleName().toStdString();
        now->setFocus(Qt::TabFocusReason);
    }
    EXPECT_EQ(reached, expected);
    EXPECT_GT(expected.size(), 50U);
}

TEST_F(ControlGalleryTest, AScreenReaderFindsTheRoleAndNameOfEveryControl) {
    for (const QWidget* widget : reachable()) {
        QAccessibleInterface* const access =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        ASSERT_NE(access, nullptr);
        const std::string name = access->text(QAccessible::Name).toStdString();
        EXPECT_NE(name, "") << widget->metaObject()->className();
        EXPECT_THAT((std::set{QAccessible::NoRole, QAccessible::Client, QAccessible::StaticText}),
                    ::testing::Not(Contains(access->role())))
            << name;
        EXPECT_TRUE(access->state().focusable) << name;
        EXPECT_FALSE(access->state().disabled) << name;
    }
}

TEST_F(ControlGalleryTest, AScreenReaderFindsTheRoleAndValueOfEachKindOfControl) {
    std::vector<std::string> found;
    for (const auto& each : gallery.cells()) {
        if (!each.name.ends_with(", rest"))
            continue;
        for (QWidget* widget : withParts(*each.widget)) {
            if (isTabStop(*widget) || qobject_cast<QScrollBar*>(widget) != nullptr)
                found.push_back(described(*widget));
        }
    }
    EXPECT_THAT(found, ElementsAreArray({"KrugButton, rest: Button",
                                         "KrugButton, active, rest: Button",
                                         "ButtonAppearance, rest: Button",
                                         "ButtonOpenAppereance, rest: Button",
                                         "ButtonSaveAppearance, rest: Button",
                                         "ScaleButton, rest: Button",
                                         "TopBarButton, rest: Button",
                                         "TopBarButton, image, rest: Button",
                                         "GradientButton, rest: Button",
                                         "AnimatedGradientButton, rest: Button",
                                         "SelectableView, rest: CheckBox not checked",
                                         "Fit: Button",
                                         "CustomViewWithButton, rest: Pane",
                                         "PolukrugButton, rest: Button",
                                         "PolukrugButton, inverted, rest: Button",
                                         "ViewWithSliderTextField, rest: Slider '45%' 45 of 1 to 100",
                                         "ViewWithSliderTextField, rest in percent: EditableText '45%'",
                                         "SliderVertical, rest: Slider '45' 45 of 1 to 100",
                                         "Hue: Slider '#FF000A' 0 of 0 to 80",
                                         "Shade: ColorChooser '#FF3C44'",
                                         "Colour as #RRGGBB: EditableText '#FF3C44'",
                                         "Take a colour from the picture: Button",
                                         "KnobScrollBar, rest: ScrollBar '0' 0 of 0 to 100",
                                         "Work: Button",
                                         "First key, rest: Button",
                                         "Second key, rest: Button"}));
}

TEST_F(ControlGalleryTest, TabGoesThroughTheControlsInTheOrderInWhichTheyAreRead) {
    std::vector<std::string> expected;
    for (const auto& each : gallery.cells()) {
        const auto inside = withParts(*each.widget);
        if (std::any_of(inside.begin(), inside.end(), [](const QWidget* w) { return isTabStop(*w); }))
            expected.push_back(each.name);
    }
    std::vector<std::string> reached;
    QTest::keyClick(&gallery, Qt::Key_Tab);
    const QWidget* const first = QApplication::focusWidget();
    const QWidget* now = first;
    do {
        const auto holds = [&](const auto& each) {
            return each.widget == now || each.widget->isAncestorOf(now);
        };
        const auto at = std::find_if(gallery.cells().begin(), gallery.cells().end(), holds);
        ASSERT_NE(at, gallery.cells().end());
        if (reached.empty() || reached.back() != at->name)
            reached.push_back(at->name);
        QTest::keyClick(&gallery, Qt::Key_Tab);
        now = QApplication::focusWidget();
    } while (now != first);
    const auto begin = std::find(reached.begin(), reached.end(), expected.front());
    std::rotate(reached.begin(), begin, reached.end());
    EXPECT_EQ(reached, expected);
}

TEST_F(ControlGalleryTest, TellsWhereItsControlsAreAndWhatTheyReport) {
    EXPECT_THAT(reports, Contains("ready"));
    EXPECT_THAT(reports, Contains(StartsWith("place: ")).Times(::testing::Gt(40)));
    reports.clear();
    QTest::mouseClick(gallery.windowHandle(), Qt::LeftButton, {},
                      place(cell("SelectableView, rest")).center());
    EXPECT_THAT(reports, ElementsAre("SelectableView, rest: selected"));
}

}  // namespace
}  // namespace trimora::controls
