#include "controls/ControlGallery.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <cmath>

#include "controls/AppStyle.h"
#include "controls/ControlNotifications.h"
#include "controls/ControlsForTests.h"
#include "controls/LayerButton.h"

namespace trimora::controls {
namespace {

QImage screenshot(QWidget& widget, double scaleFactor) {
    QImage image((QSizeF(widget.size()) * scaleFactor).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scaleFactor);
    image.fill(Qt::transparent);
    widget.render(&image);
    return image;
}

/// Kept beside the tests, to be opened and looked at.
TEST(ControlGallery, IsDrawnAtEveryScaleWithEveryStateUnlikeRest) {
    applyAppStyle(*qobject_cast<QApplication*>(QCoreApplication::instance()));
    VirtualWorld world;
    QWidget window;
    ControlGallery gallery(world.context(), &window);
    window.show();
    world.settle();
    world.notifications.post(notifications::kClickColor);  // as when the picker comes into view
    world.advance(1);
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage image = screenshot(gallery, scale);
        EXPECT_TRUE(image.save(QStringLiteral("controls-%1x.png").arg(scale)));
    }
    const QList<LayerButton*> buttons = gallery.findChildren<LayerButton*>();
    int states = 0;
    for (const LayerButton* button : buttons) {
        if (button->accessibleName() == buttons.front()->accessibleName())
            ++states;
    }
    ASSERT_EQ(states, 5);
    QImage rest;
    int index = 0;
    for (LayerButton* const button : buttons) {
        if (button->accessibleName().isEmpty() || button->accessibleName().startsWith("Take"))
            continue;
        const QImage shown = screenshot(*button, 2);
        if (index % states == 0)
            rest = shown;
        else
            EXPECT_NE(shown, rest) << button->accessibleName().toStdString() << " in state "
                                   << index % states;
        ++index;
    }
    EXPECT_EQ(index, 12 * states);
}

}  // namespace
}  // namespace trimora::controls
