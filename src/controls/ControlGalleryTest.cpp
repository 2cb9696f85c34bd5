#include "controls/ControlGallery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAnimationDriver>
#include <QApplication>
#include <QPainter>
#include <cstdlib>
#include <set>

#include "controls/AppStyle.h"
#include "controls/ControlsForTests.h"
#include "controls/ReferencePictureForTests.h"

namespace trimora::controls {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
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
        applyAppStyle(*qobject_cast<QApplication*>(QCoreApplication::instance()));
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
            if (widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                widget->focusProxy() == nullptr)
                found.insert(widget);
        }
        return found;
    }

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
