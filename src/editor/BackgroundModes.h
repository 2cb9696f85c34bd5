#pragma once

#include <cstdint>

#include "cutengine/Colour.h"
#include "editor/EditorOutlets.h"
#include "foundation/NotificationCenter.h"

namespace trimora::cutengine {
class RKImageCutView;
}

namespace trimora::editor {

/// What is behind the cut-out, as the right panel shows and chooses it: nothing, a colour, or the blurred
/// picture.
///
/// A colour counts when the picker reports one, which it does when the coloured mode is chosen and each
/// time the person picks; its button shows itself chosen only then. Main thread only; what is referred to
/// lives longer.
class BackgroundModes {
 public:
    BackgroundModes(const EditorOutlets& outlets, foundation::NotificationCenter& notifications);

    void chooseEraserMode();
    void chooseColorMode();
    void chooseBlurMode();

    /// The picker has a colour, picked or reported again.
    void ColorPickerDidSelectNSColor(const cutengine::Colour& color);

    /// Turns the panel, and it alone, to nothing: where a first picture comes.
    void showTransparent();

    /// Gives the cut view the mode that the panel shows, after it took another picture.
    void applyShownMode();

 private:
    enum class Mode : std::uint8_t { transparent, colour, blurred };

    [[nodiscard]] cutengine::RKImageCutView& cutView() const;
    void apply(Mode mode);

    const EditorOutlets& outlets_;
    foundation::NotificationCenter& notifications_;
    Mode shown_ = Mode::transparent;
};

}  // namespace trimora::editor
