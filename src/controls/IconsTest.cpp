#include "controls/Icons.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPixmap>
#include <thread>
#include <utility>

#include "controls/IconsAhead.h"
#include "testing/CapturedLog.h"

namespace trimora::controls {
namespace {

TEST(Icons, EveryDrawnImageRendersAtEveryScale) {
    const QStringList files = QDir(":/images").entryList();
    ASSERT_FALSE(files.isEmpty());
    for (const QString& file : files) {
        for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
            const QPixmap drawn = icon(file.chopped(4)).pixmap(QSize(24, 24), scale);
            EXPECT_EQ(drawn.size(), QSize(24, 24) * scale) << file.toStdString();
            QImage blank(drawn.size(), QImage::Format_ARGB32_Premultiplied);
            blank.fill(Qt::transparent);
            EXPECT_NE(drawn.toImage().convertToFormat(blank.format()), blank) << file.toStdString();
        }
    }
}

TEST(Icons, EveryNameThatTheScreenAsksForIsDrawn) {
    for (const char* name : {"hand_active_new",
                             "hand_noActive_new",
                             "eraser_active",
                             "eraser_noActive",
                             "history_brush_active_new2",
                             "history_brush_noActive_new",
                             "restore",
                             "restore__active",
                             "blur",
                             "blur__active",
                             "brush",
                             "hand",
                             "btnAlphaBack_select",
                             "btnAlphaBack_unselect",
                             "btnColorBack_select",
                             "btnColorBack_unselect",
                             "btnBlur_select",
                             "btnBlur_unselect",
                             "Scrubber",
                             "tile.png",
                             "arrow_down",
                             "picture_drop",
                             "open",
                             "save",
                             "back",
                             "forward",
                             "restoreImage"}) {
        EXPECT_TRUE(QFile::exists(QStringLiteral(":/images/%1.svg").arg(name))) << name;
    }
}

/// Where anything bright is drawn, whatever its colour.
QImage shapeOf(const char* name) {
    constexpr int kBright = 100;
    const QImage drawn = icon(name).pixmap(QSize(48, 48), 1.0).toImage();
    QImage shape(drawn.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor colour = drawn.pixelColor(x, y);
            const int seen = colour.value() * colour.alpha() / 255;
            shape.setPixelColor(x, y, seen > kBright ? Qt::white : Qt::black);
        }
    }
    return shape;
}

TEST(Icons, ActiveAndInactiveDifferInShapeToo) {
    constexpr std::pair<const char*, const char*> kPairs[] = {
        {"hand_active_new", "hand_noActive_new"},
        {"eraser_active", "eraser_noActive"},
        {"history_brush_active_new2", "history_brush_noActive_new"},
        {"restore__active", "restore"},
        {"blur__active", "blur"},
        {"btnAlphaBack_select", "btnAlphaBack_unselect"},
        {"btnColorBack_select", "btnColorBack_unselect"},
        {"btnBlur_select", "btnBlur_unselect"}};
    for (const auto& [active, inactive] : kPairs) {
        const QImage one = shapeOf(active);
        const QImage other = shapeOf(inactive);
        int different = 0;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x)
                different += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
        }
        EXPECT_GT(different, one.width() * one.height() * 3 / 100) << active;
    }
}

TEST(Icons, TwoStatesShowTwoImages) {
    const QIcon both = icon("hand_active_new", "hand_noActive_new");
    const QSize size(24, 24);
    EXPECT_NE(both.pixmap(size, 1.0, QIcon::Normal, QIcon::On).toImage(),
              both.pixmap(size, 1.0, QIcon::Normal, QIcon::Off).toImage());
}

TEST(Icons, DrawnAheadOnAnotherThreadTheyAreTheSame) {
    const QString file = QStringLiteral(":/images/open.svg");
    const QImage now = drawnImage(file, QSize(30, 30));
    std::thread([] { drawIconsAhead({{"open", 20}}, 1.5); }).join();
    EXPECT_EQ(drawnImage(file, QSize(20, 20)).size(), QSize(20, 20)) << "not the one of another size";
    const QImage ahead = drawnImage(file, QSize(30, 30));
    EXPECT_EQ(ahead, now);
    EXPECT_NE(drawnImage(file, QSize(30, 30)).cacheKey(), ahead.cacheKey()) << "handed out once";
}

TEST(Icons, AnUnknownNameIsAnErrorLineAndAnEmptyIcon) {
    testing::expectErrorLines();
    const testing::CapturedLog log;
    EXPECT_TRUE(icon("nothing_of_the_kind").isNull());
    EXPECT_TRUE(log.contains("nothing_of_the_kind"));
}

}  // namespace
}  // namespace trimora::controls
