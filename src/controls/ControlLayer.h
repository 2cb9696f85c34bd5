#pragma once

#include <QColor>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/LayerAnimation.h"
#include "cutengine/imageutil/BezierPath.h"
#include "foundation/Geometry.h"

class QPainter;

namespace trimora::controls {

/// One sheet of what a control draws: a rectangle with a background, contents of its own, sheets on
/// top of it, and animations that change how it is shown for a while.
///
/// Space: a layer's frame lies in the space of the layer above it (its superlayer), its own contents in
/// (0, 0, width, height); points, y-up, origin at the bottom left. What it paints is vectors wherever it
/// can be, so it is sharp at every scale factor of the painter.
///
/// Time: animations never change a layer's own values, only what it presents. Times are seconds on the
/// caller's Clock; whoever paints passes the time in.
///
/// A layer shares ownership of its sublayers. Main thread only.
class ControlLayer {
 public:
    ControlLayer() = default;
    virtual ~ControlLayer();
    ControlLayer(const ControlLayer&) = delete;
    ControlLayer& operator=(const ControlLayer&) = delete;

    [[nodiscard]] const foundation::Rect& frame() const { return frame_; }
    void setFrame(const foundation::Rect& frame) { frame_ = frame; }
    /// The layer's own space: its size, from the origin.
    [[nodiscard]] foundation::Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }

    bool hidden = false;
    double opacity = 1;                       ///< 0..1, of this layer and all on top of it
    foundation::Point anchorPoint{0.5, 0.5};  ///< what a scale keeps in place, as shares of the size
    QColor backgroundColor = Qt::transparent;
    double cornerRadius = 0;  ///< of background and border; contents are not cut
    double borderWidth = 0;   ///< inside the edge
    QColor borderColor = Qt::transparent;
    /// Nothing of the layer and its sublayers shows outside this outline, given in the layer's own space.
    std::optional<cutengine::BezierPath> mask;

    [[nodiscard]] const std::vector<std::shared_ptr<ControlLayer>>& sublayers() const { return sublayers_; }
    /// On top of the others. A layer that has a superlayer leaves it first.
    void addSublayer(std::shared_ptr<ControlLayer> layer);
    /// Below the others at index 0, and so on up to their number.
    void insertSublayer(std::shared_ptr<ControlLayer> layer, std::size_t index);
    void removeFromSuperlayer();

    /// Adds a sublayer of any kind and hands back a reference to it for its maker to keep.
    template <typename Kind>
    Kind& make() {
        auto layer = std::make_shared<Kind>();
        Kind& made = *layer;
        addSublayer(std::move(layer));
        return made;
    }

    /// Starts an animation at `now`; it replaces the one with the same key.
    void addAnimation(LayerAnimation animation, std::string_view key, double now);
    void removeAnimation(std::string_view key);
    [[nodiscard]] bool hasAnimation(std::string_view key) const;

    /// What the layer shows at `now`. Of two animations of one property the one added later counts.
    [[nodiscard]] LayerPresentation presentation(double now) const;

    /// Whether this layer or one on top of it may look different after `now`. Hidden ones do not count.
    [[nodiscard]] bool isAnimating(double now) const;

    /// Whether this layer and those on top of it look the same at both times where nobody sees a move of less
    /// than `leastMove` points.
    [[nodiscard]] bool looksAlike(double one, double other, double leastMove) const;

    /// Paints the layer and its sublayers. The painter is in the superlayer's space, y-up; it comes back
    /// as it was. Opacity reaches every drawn thing by itself: overlapping sublayers of a half-transparent
    /// layer show through each other.
    void paint(QPainter& painter, double now) const;

 protected:
    /// Draws what the layer itself holds, in its own space; the background is painted already.
    virtual void paintContents(QPainter& painter, const LayerPresentation& shown) const;

 private:
    struct RunningAnimation {
        std::string key;
        LayerAnimation animation;
        double start;
    };

    foundation::Rect frame_;
    ControlLayer* superlayer_ = nullptr;
    std::vector<std::shared_ptr<ControlLayer>> sublayers_;
    std::vector<RunningAnimation> animations_;
};

}  // namespace trimora::controls
