#pragma once

#include "sample/Band.h"

namespace trimora::sample {

/// The wooden table on which the subject stands: soft where it ends in the distance, sharp at its
/// front edge, darkened under what stands on it.
class Table final : public SceneElement {
 public:
    void paint(Band& band) const override;
};

}  // namespace trimora::sample
