#include "batch/PictureCutter.h"

#include <utility>

#include "batch/MaskImage.h"
#include "batch/NoWindow.h"
#include "cutengine/RKImageCutView.h"
#include "foundation/ManualQueues.h"
#include "foundation/NotificationCenter.h"
#include "foundation/VirtualTime.h"

namespace trimora::batch {
namespace {

using cutengine::PicturePtr;
using cutengine::RKImageCutView;
using foundation::Bitmap;
using foundation::Error;
using foundation::IntRect;
using foundation::Result;

/// The colour that the picker of a fresh editor has chosen.
constexpr cutengine::Colour kFreshColour{0, 0, 0, 1};

constexpr const char* kNoMemory = "there is not enough memory for the result";

/// A cut view with all that it needs: its queues run when they are told to, and its time stands still.
class Bench {
 public:
    explicit Bench(foundation::Workers& workers) : queues_(workers) {}

    [[nodiscard]] RKImageCutView& view() { return view_; }

    /// Lets everything that was asked for be done.
    void settle() { queues_.settle(); }

 private:
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    NoWindow window_;
    RKImageCutView view_{{queues_, time_, notifications_, std::nullopt}, window_};
};

void setBackground(RKImageCutView& view, const BackgroundChoice& choice) {
    switch (choice.kind) {
        case BackgroundChoice::Kind::none:
            view.setColorOn(true);
            break;
        case BackgroundChoice::Kind::blur:
            view.setBlurOn(true);
            break;
        case BackgroundChoice::Kind::colour:
            view.setBrushColor(choice.colour);
            view.setBlurOn(false);
            break;
    }
}

/// The result as it is without a background.
PicturePtr subjectOf(RKImageCutView& view) {
    cutengine::Layer& background = *view.bluredLayer();
    const bool hidden = background.isHidden();
    background.setHidden(true);
    PicturePtr subject = view.getResult();
    background.setHidden(hidden);
    return subject;
}

Result<IntRect> boxToKeep(RKImageCutView& view) {
    const PicturePtr subject = subjectOf(view);
    if (!subject)
        return Error{kNoMemory};
    const IntRect box = visibleBox(subject->bestRepresentation()->view());
    if (box.isEmpty())
        return Error{"nothing is left of the picture to crop to"};
    return box;
}

}  // namespace

Result<CutPicture> cutPicture(const PicturePtr& picture, const CutRecipe& recipe,
                              foundation::Workers& workers) {
    Bench bench(workers);
    RKImageCutView& view = bench.view();
    view.setViewSize(picture->size());
    view.setBrushColor(kFreshColour);
    view.setImage(picture);
    if (recipe.mask) {
        Result<Bitmap> mask = recipe.mask->clone();
        if (!mask)
            return mask.error();
        view.loadMask(std::move(*mask));
    }
    bench.settle();
    recipe.strokes.perform(view, [&bench] { bench.settle(); });
    if (recipe.background)
        setBackground(view, *recipe.background);
    bench.settle();

    CutPicture cut{nullptr, {0, 0, picture->pixelWidth(), picture->pixelHeight()}, view.copyMaskPlane()};
    if (recipe.crop) {
        const Result<IntRect> box = boxToKeep(view);
        if (!box)
            return box.error();
        cut.box = *box;
    }
    cut.result = view.getResult();
    if (!cut.result || cut.mask.isEmpty())
        return Error{kNoMemory};
    return cut;
}

}  // namespace trimora::batch
