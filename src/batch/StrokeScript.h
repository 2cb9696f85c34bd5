#pragma once

#include <functional>
#include <istream>
#include <vector>

#include "cutengine/RKImageCutView.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"
#include "script/Steps.h"

namespace trimora::batch {

/// The strokes of an edit script, ready to be painted over any picture: what a person did in a window, done
/// without one.
///
/// Only steps that mean something to a cut view alone are taken: "view", "mouse", "stroke", "modifiers",
/// "key", "set", "slider" with a value, "settle" and "advance". A value; any thread.
class StrokeScript {
 public:
    StrokeScript() = default;

    /// Reads to the end of the stream. An error names the line that cannot be read, that is another step,
    /// or that has places before a "view" step has said how large the view is.
    [[nodiscard]] static foundation::Result<StrokeScript> read(std::istream& lines);

    /// Does the steps on a view that shows a picture, and calls `settle` after each, which is to let the
    /// view's queues finish.
    void perform(cutengine::RKImageCutView& view, const foundation::Task& settle) const;

    [[nodiscard]] bool isEmpty() const { return steps_.empty(); }

 private:
    std::vector<script::Step> steps_;
};

}  // namespace trimora::batch
