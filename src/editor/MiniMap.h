#pragma once

#include <QSize>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "controls/ControlLayer.h"
#include "controls/LayerHost.h"
#include "controls/ShapeLayer.h"
#include "controls/TextLayer.h"
#include "cutengine/Picture.h"
#include "editor/MiniMapGeometry.h"
#include "editor/OutgoingPicture.h"
#include "foundation/Queues.h"

namespace trimora::editor {

class PictureLayer;

/// The whole picture small, with a frame round the part that the cut view shows.
///
/// Views. The raised box is backgroundScaleView; in it lie backMiniMapImage (black, behind the picture),
/// miniMapImage (the picture, square, so that a picture of any shape fits into it), viewBorderScale over
/// it, which shades what is out of view and frames what is in view, and openPictureViewScale, a line with
/// the picture's size. They are layers: y-up, in points; those inside viewBorderScale and miniMapImage
/// count from the bottom left of miniMapImage.
///
/// Working it. A press, a drag or an arrow key asks for another centre of the view; nothing moves here
/// until the cut view reports its new place. A drag that leaves the box by some way becomes a drag of the
/// result as a PNG file, and the view goes back to where it was at the press.
///
/// The small copy of the picture is scaled in high quality on the background queue, once for each picture,
/// size and scale factor of the screen. Main thread only; the queues outlive the widget.
class MiniMap final : public QWidget {
 public:
    struct Services {
        controls::ControlContext control;
        foundation::QueueFactory& queues;
        std::filesystem::path caches;  ///< where a dragged file is put down; see cachesFolder()
    };
    explicit MiniMap(const Services& services, QWidget* parent = nullptr);
    ~MiniMap() override;

    /// Shows another picture, all of it in view; none empties the map.
    void setPicture(cutengine::PicturePtr picture);
    [[nodiscard]] const cutengine::PicturePtr& picture() const { return picture_; }

    /// Marks the part in view; the values are those that the cut view reports (see MiniMapFit::border).
    void showBorder(float sootnX, float sootnY, float sizeW, float sizeH);

    /// The picture's fitted size in miniMapImage, in points.
    [[nodiscard]] float sizeWidthMiniMap() const { return fit_.sizeWidthMiniMap; }
    [[nodiscard]] float sizeHeightMiniMap() const { return fit_.sizeHeightMiniMap; }

    /// The part in view. Its frame is in the points of miniMapImage, y-up.
    [[nodiscard]] const controls::ControlLayer& testboirder() const { return testboirder_; }
    [[nodiscard]] const controls::ControlLayer& miniMapImage() const;
    [[nodiscard]] const controls::ControlLayer& backMiniMapImage() const { return backMiniMapImage_; }
    [[nodiscard]] const controls::ControlLayer& viewBorderScale() const { return viewBorderScale_; }
    [[nodiscard]] const controls::ControlLayer& backgroundScaleView() const { return layers_.root(); }
    [[nodiscard]] const controls::ControlLayer& openPictureViewScale() const { return openPictureViewScale_; }
    [[nodiscard]] const controls::ShapeLayer& borderLayerScale() const { return borderLayerScale_; }
    [[nodiscard]] const controls::ShapeLayer& maskLayerScale() const { return maskLayerScale_; }

    /// Called with the wanted centre of the view, as shares 0..1 of the picture from its bottom left.
    void onCentreWanted(std::function<void(foundation::Point)> handler) {
        centreWanted_ = std::move(handler);
    }

    /// Makes the file that a drag carries; called when another program asks for it. Without it pictures
    /// are not dragged out.
    void setResultSupply(OutgoingPictureData::Supply supply) { supply_ = std::move(supply); }

    /// Runs a drag; the data is to be owned by whoever takes it. The toolkit's own where none is set.
    using DragStarter = std::function<void(std::unique_ptr<QMimeData>, const QPixmap&)>;
    void setDragStarter(DragStarter starter) { startDrag_ = std::move(starter); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void layOut();
    void fitPicture();
    void showCaption();
    void placeBorder();
    void scalePicture();
    void takeScaled(const cutengine::PicturePtr& scaled);
    void wantCentre(foundation::Point share);
    [[nodiscard]] foundation::Point shareAt(QPointF place) const;
    [[nodiscard]] foundation::Point shownCentre() const;
    void dragOut();

    Services services_;
    controls::LayerHost layers_;
    controls::ControlLayer& backMiniMapImage_;
    PictureLayer& miniMapImage_;
    controls::ControlLayer& viewBorderScale_;
    controls::ShapeLayer& maskLayerScale_;
    controls::ShapeLayer& borderLayerScale_;
    controls::ControlLayer& testboirder_;
    controls::ControlLayer& openPictureViewScale_;
    controls::TextLayer& caption_;

    cutengine::PicturePtr picture_;
    MiniMapFit fit_;
    struct Border {
        float sootnX = 1;
        float sootnY = 1;
        float sizeW = 1;
        float sizeH = 1;
    } border_;
    QSize scaledFor_;  // device pixels of the copy that is there or on its way
    /// Held by the map alone; scaling that ends under an older one comes to nothing.
    std::shared_ptr<int> scaling_;
    std::optional<foundation::Point> centreAtPress_;  // set while a press moves the view

    std::function<void(foundation::Point)> centreWanted_;
    OutgoingPictureData::Supply supply_;
    DragStarter startDrag_;
    std::shared_ptr<const ScratchFolder> outgoing_;  // of the last drag; others may still copy out of it
};

}  // namespace trimora::editor
