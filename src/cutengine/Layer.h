#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <variant>
#include <vector>

#include "cutengine/Picture.h"
#include "cutengine/kernels/MaskSnapshot.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine {

/// A picture made ready to be drawn at any size: its best bitmap and the smaller copies of it.
struct DrawablePicture {
    PicturePtr picture;  ///< none where the copies alone are kept
    MipPyramidPtr pyramid;
};

/// What a layer shows: nothing, a picture, a mask, or one colour (premultiplied) all over.
using LayerContents = std::variant<std::monostate, std::shared_ptr<const DrawablePicture>,
                                   kernels::MaskSnapshotPtr, foundation::Pixel>;

/// One sheet of the cut view's stack: contents of a size, placed by an affine transform, perhaps seen
/// through the alpha of another layer.
///
/// The transform works about the centre of the layer: a point p of the layer's own space (origin at
/// the bottom left corner, y-up, one unit a picture point) lands at T (p - size / 2) in view points, so
/// the translation of T is where the centre goes.
///
/// An animation changes only what is shown meanwhile (presentation()); transform() is the final value
/// from the moment it is set. Times are seconds on the caller's Clock.
///
/// The main thread owns a layer; contents alone may be set and read from any thread.
class Layer {
 public:
    explicit Layer(foundation::Size size = {}) : size_(size) {}
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    [[nodiscard]] foundation::Size size() const { return size_; }

    [[nodiscard]] bool isHidden() const { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }

    [[nodiscard]] LayerContents contents() const;
    void setContents(LayerContents contents);

    [[nodiscard]] const std::shared_ptr<Layer>& mask() const { return mask_; }
    void setMask(std::shared_ptr<Layer> mask) { mask_ = std::move(mask); }

    [[nodiscard]] const std::vector<std::shared_ptr<Layer>>& sublayers() const { return sublayers_; }
    void addSublayer(std::shared_ptr<Layer> layer) { sublayers_.push_back(std::move(layer)); }
    void removeAllSublayers() { sublayers_.clear(); }

    /// The final transform, whatever animation is on its way.
    [[nodiscard]] const foundation::AffineTransform& transform() const { return transform_; }

    /// Sets the final transform at once; an animation that is on its way goes on to its own end.
    void setTransform(const foundation::AffineTransform& transform) { transform_ = transform; }

    /// Sets the final transform and moves there from what is shown at `now`, easing out.
    void animateTransform(const foundation::AffineTransform& transform, double now, double duration);

    void removeAllAnimations() { animation_.reset(); }

    /// The transform to draw with at the given time; exactly transform() once an animation has ended.
    [[nodiscard]] foundation::AffineTransform presentation(double now) const;
    [[nodiscard]] bool isAnimating(double now) const;

    /// From the layer's own space into view points, by a transform of this layer.
    [[nodiscard]] foundation::AffineTransform toView(const foundation::AffineTransform& transform) const;

 private:
    struct Animation {
        foundation::AffineTransform from;
        foundation::AffineTransform to;
        double start;
        double duration;
    };

    const foundation::Size size_;
    bool hidden_ = false;
    mutable std::mutex contentsMutex_;
    LayerContents contents_;
    std::shared_ptr<Layer> mask_;
    std::vector<std::shared_ptr<Layer>> sublayers_;
    foundation::AffineTransform transform_;
    std::optional<Animation> animation_;
};

/// How far an ease-out animation has come at a share `t` of its time, both 0..1: the cubic curve with
/// control points (0, 0) and (0.58, 1).
[[nodiscard]] double easeOut(double t);

}  // namespace trimora::cutengine
