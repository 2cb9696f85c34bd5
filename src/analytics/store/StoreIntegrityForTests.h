#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "analytics/store/StoreCoordinator.h"

/// How tests look at the file of a store.
namespace trimora::analytics {

/// What SQLite finds wrong with the file, "ok" where that is nothing, or why it cannot tell.
inline std::string integrityOf(StoreCoordinator& coordinator) {
    std::string answer;
    const auto done = coordinator.read([&](auto& database) {
        auto check = database.statement("PRAGMA integrity_check");
        while (check.step())
            answer += check.text(0).value_or("");
        return check.result();
    });
    return done ? answer : done.error().message;
}

/// The damaged stores that were put aside from beside this file; in no order.
inline std::vector<std::filesystem::path> movedAsideFrom(const std::filesystem::path& file) {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
        if (entry.path().string().find(".damaged-") != std::string::npos)
            found.push_back(entry.path());
    }
    return found;
}

}  // namespace trimora::analytics
