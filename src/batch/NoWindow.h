#pragma once

#include <string>

#include "cutengine/CutViewHost.h"

namespace trimora::batch {

/// The host of a cut view that nobody looks at: nothing is to be shown or asked.
class NoWindow final : public cutengine::CutViewHost {
 public:
    void openPicture(cutengine::RKImageCutView& /*sender*/) override {}
    void setCursor(const cutengine::Cursor& /*cursor*/) override {}
    void setNeedsDisplay(const foundation::Rect& /*area*/) override {}
    [[nodiscard]] double scaleFactor() const override { return 1; }
    void historyCannotBeKept(const std::string& /*reason*/) override {}
    void memoryIsMissing() override {}
};

}  // namespace trimora::batch
