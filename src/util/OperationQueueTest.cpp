#include "util/OperationQueue.h"

#include <gtest/gtest.h>

#include <vector>

namespace trimora::util {
namespace {

class OperationQueueTest : public ::testing::Test {
 protected:
    void add(int name) {
        queue_.addOperation([this, name](OperationQueue::Finished finished) {
            begun_.push_back(name);
            finish_.push_back(std::move(finished));
        });
    }

    OperationQueue queue_{2};
    std::vector<int> begun_;
    std::vector<OperationQueue::Finished> finish_;
};

TEST_F(OperationQueueTest, NoMoreThanItsWidthAreUnderWayAndTheRestFollowInOrder) {
    for (int name = 1; name <= 4; ++name)
        add(name);
    EXPECT_EQ(begun_, (std::vector{1, 2}));
    finish_[1]();
    EXPECT_EQ(begun_, (std::vector{1, 2, 3}));
    finish_[0]();
    EXPECT_EQ(begun_, (std::vector{1, 2, 3, 4}));
}

TEST_F(OperationQueueTest, AnOperationCountsUntilItHasFinished) {
    for (int name = 1; name <= 3; ++name)
        add(name);
    EXPECT_EQ(queue_.operationCount(), 3);
    for (std::size_t i = 0; i < 3; ++i)
        finish_[i]();
    EXPECT_EQ(queue_.operationCount(), 0);
}

TEST_F(OperationQueueTest, AnOperationMayFinishAtOnceAndAddAnother) {
    queue_.addOperation([this](const OperationQueue::Finished& finished) {
        add(7);
        finished();
    });
    EXPECT_EQ(begun_, std::vector{7});
    EXPECT_EQ(queue_.operationCount(), 1);
}

TEST_F(OperationQueueTest, ItIsNeverNarrowerThanOne) {
    EXPECT_EQ(OperationQueue(0).maxConcurrentOperationCount(), 1);
    EXPECT_GE(OperationQueue::widthOfThisMachine(), 1);
}

}  // namespace
}  // namespace trimora::util
