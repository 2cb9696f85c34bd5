#pragma once

#include "sample/Band.h"

namespace trimora::sample {

/// The owl chick's eyes and beak.
class Face final : public SceneElement {
 public:
    void paint(Band& band) const override;
};

}  // namespace trimora::sample
