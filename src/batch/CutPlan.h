#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "batch/CutOrder.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// One picture of an order: where it comes from and what is written.
struct CutTask {
    std::string input;             ///< a file or "-"
    std::filesystem::path result;  ///< a file or "-"
    std::filesystem::path mask;    ///< where the mask is kept; empty where it is not

    friend bool operator==(const CutTask&, const CutTask&) = default;
};

/// The tasks of an order, one a picture, in its order. Looks at names alone, and touches no file.
///
/// Two tasks that would write the same file are an error that names both pictures.
[[nodiscard]] foundation::Result<std::vector<CutTask>> planOf(const CutOrder& order);

}  // namespace trimora::batch
