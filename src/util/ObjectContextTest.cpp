#include "util/ObjectContext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"

namespace trimora::util {
namespace {

class ContextInMemory final : public ObjectContext {
 public:
    [[nodiscard]] std::size_t count(std::string_view entity) const override {
        return entities.at(std::string(entity)).size();
    }
    [[nodiscard]] std::vector<std::any> fetch(std::string_view entity,
                                              std::optional<Range> range) const override {
        const std::vector<std::any>& all = entities.at(std::string(entity));
        const auto part = range.value_or(Range{0, all.size()});
        const auto first = all.begin() + static_cast<std::ptrdiff_t>(std::min(part.location, all.size()));
        return std::vector<std::any>(
            first, first + std::min(static_cast<std::ptrdiff_t>(part.length), all.end() - first));
    }
    foundation::Result<void> save() override {
        ++saves;
        if (full)
            return foundation::Error{"no space left", 28};
        return {};
    }

    std::map<std::string, std::vector<std::any>> entities = {{"Brush", {1, 2, 3, 4}}};
    bool full = false;
    int saves = 0;
};

TEST(ObjectContext, ObjectsAreCountedAndFetchedByTheNameOfTheirKind) {
    const ContextInMemory context;
    EXPECT_EQ(countOfDataArray(context, "Brush"), 4U);
    EXPECT_EQ(getDataArray(context, "Brush").size(), 4U);
    const std::vector<std::any> part = getDataArray(context, "Brush", {1, 2});
    ASSERT_EQ(part.size(), 2U);
    EXPECT_EQ(std::any_cast<int>(part[0]), 2);
}

TEST(ObjectContext, ABurstOfSavesWritesOnceOneSecondAfterTheLast) {
    foundation::VirtualTime time;
    foundation::ManualQueueFactory queues;
    ThreadFlowRegistry flows(queues, time, time);
    ContextInMemory context;
    const auto settle = [&queues] { queues.settle(); };
    for (int call = 0; call < 5; ++call) {
        saveContext(context, flows);
        time.advance(0.5, settle);
    }
    EXPECT_EQ(context.saves, 0);
    time.advance(0.6, settle);
    EXPECT_EQ(context.saves, 1);
}

TEST(ObjectContext, ASaveThatFailsIsAnErrorLine) {
    testing::expectErrorLines();
    const testing::CapturedLog log;
    ContextInMemory context;
    context.full = true;
    saveContextForce(context);
    EXPECT_TRUE(log.contains("Unresolved error no space left, 28"));
}

}  // namespace
}  // namespace trimora::util
