#pragma once

#include "sample/Band.h"

namespace trimora::sample {

/// A glazed stoneware vase: the hard outline of the scene.
class Vase final : public SceneElement {
 public:
    void paint(Band& band) const override;
};

}  // namespace trimora::sample
