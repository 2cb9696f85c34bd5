#include "controls/Icons.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPixmap>

#include "testing/CapturedLog.h"

namespace trimora::controls {
namespace {

TEST(Icons, EveryDrawnImageRendersAtEveryScale) {
    const QStringList files = QDir(":/images").entryList();
    ASSERT_FALSE(files.isEmpty());
    for (const QString& file : files) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            const QPixmap drawn = icon(file.chopped(4)).pixmap(QSize(24, 24), scale);
            EXPECT_EQ(drawn.size(), QSize(24, 24) * scale) << file.toStdString();
            QImage blank(drawn.size(), QImage::Format_ARGB32_Premultiplied);
            blank.fill(Qt::transparent);
            EXPECT_NE(drawn.toImage().convertToFormat(blank.format()), blank) << file.toStdString();
        }
    }
}

TEST(Icons, TwoStatesShowTwoImages) {
    const QIcon both = icon("hand_active_new", "hand_noActive_new");
    const QSize size(24, 24);
    EXPECT_NE(both.pixmap(size, 1.0, QIcon::Normal, QIcon::On).toImage(),
              both.pixmap(size, 1.0, QIcon::Normal, QIcon::Off).toImage());
}

TEST(Icons, AnUnknownNameIsAnErrorLineAndAnEmptyIcon) {
    testing::expectErrorLines();
    const testing::CapturedLog log;
    EXPECT_TRUE(icon("nothing_of_the_kind").isNull());
    EXPECT_TRUE(log.contains("nothing_of_the_kind"));
}

}  // namespace
}  // namespace trimora::controls
