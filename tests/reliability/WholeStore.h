#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "analytics/store/ManagedObjectContext.h"
#include "analytics/store/StoreIntegrityForTests.h"

namespace trimora::reliability {

/// An event store that was opened after a fault is in order, takes a further event, and was not begun anew
/// beside a damaged one.
inline void expectWholeStore(analytics::StoreCoordinator& coordinator, const std::filesystem::path& file) {
    EXPECT_EQ(analytics::integrityOf(coordinator), "ok");
    analytics::TXEvent further{0, "later", "after the fault"};
    EXPECT_TRUE(analytics::ManagedObjectContext(coordinator).save(further));
    EXPECT_THAT(analytics::movedAsideFrom(file), ::testing::IsEmpty());
}

}  // namespace trimora::reliability
