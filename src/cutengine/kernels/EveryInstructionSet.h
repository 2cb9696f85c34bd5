#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "hwy/targets.h"

namespace trimora::cutengine::kernels {

/// Runs a test's body once for every instruction set that this processor has and the kernels are
/// built for, forcing each in turn. The chosen set is the process's: no other thread may run kernels.
inline void onEveryInstructionSet(const std::function<void()>& body) {
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        body();
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace trimora::cutengine::kernels
