#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "AllocationFaults.h"
#include "EngineUse.h"
#include "Processes.h"
#include "files/FilesForTests.h"
#include "foundation/Log.h"
#include "testing/Depth.h"

// The cut view and the codecs with memory running out at any allocation: the program goes on, and a person
// who then has memory can work again.
namespace trimora::reliability {
namespace {

class EngineMemory : public ::testing::Test {
 protected:
    static constexpr int kDoesNotWork = 1;
    static constexpr int kLeaks = 3;

    [[nodiscard]] static std::int64_t allocationsOf(EngineUse& engine, std::size_t smallest) {
        const AllocationFaults counted(0, false, smallest);
        engine.work();
        return AllocationFaults::count();
    }
    static void workWithFault(EngineUse& engine, std::int64_t number, bool forEver, std::size_t smallest) {
        foundation::PixelBuffer::trimStock();
        const AllocationFaults faults(number, forEver, smallest);
        engine.work();
    }
    /// Blocks that are held once all that may be given back is.
    [[nodiscard]] static std::int64_t blocksHeld(EngineUse& engine) {
        (void)engine.works();
        engine.view.setImage(nullptr);
        engine.host = {};
        foundation::PixelBuffer::trimStock();
        return AllocationFaults::liveBlocks();
    }
    /// The same work with the same fault again and again; what has grown by then grows with each fault.
    [[nodiscard]] static int leakOf(EngineUse& engine, std::int64_t number) {
        foundation::log::setSink([](auto, auto) {});  // the test's own keeps every line
        std::int64_t held = 0;
        for (int i = 0; i < 4; ++i) {
            workWithFault(engine, number, false, 0);
            const std::int64_t now = blocksHeld(engine);
            if (i > 0 && now <= held)
                return 0;
            held = now;
        }
        return kLeaks;
    }
    /// Every `stride`-th allocation of at least `smallest` bytes is refused, once and from there on.
    void refuse(std::size_t smallest, int points) {
        EngineUse engine(home_.path());
        const std::int64_t total = allocationsOf(engine, smallest);
        ASSERT_GT(total, 10);
        const std::int64_t stride = std::max<std::int64_t>(1, 2 * total / points);
        int tried = 0;
        int leaks = 0;
        for (const bool forEver : {false, true}) {
            for (std::int64_t number = 1; number <= total; number += stride) {
                files::put(engine.target(), "old");
                const Ended ended = inOwnProcess([&] {
                    workWithFault(engine, number, forEver, smallest);
                    if (!engine.works())
                        return kDoesNotWork;
                    return smallest > 0 || forEver || tried % 4 != 0 ? 0 : leakOf(engine, number);
                });
                ++tried;
                leaks += ended.exited && ended.status == kLeaks ? 1 : 0;
                EXPECT_EQ(ended.text(), "exit 0")
                    << "allocation " << number << (forEver ? " and all after" : "");
                const std::string saved = files::contents(engine.target());
                EXPECT_TRUE(saved == "old" || saved.starts_with("\x89PNG"));
            }
        }
        std::printf("%lld allocations of at least %zu bytes, %d points, %d leaks\n",
                    static_cast<long long>(total), smallest, tried, leaks);
    }

    testing::TemporaryFolder home_;
};

TEST_F(EngineMemory, ThatRunsOutForPicturesIsBorne) {
    constexpr std::size_t kLargeBlock = 100'000;
    refuse(kLargeBlock, 10'000);
}

TEST_F(EngineMemory, ThatRunsOutForAnythingIsBorneAndNothingLeaks) {
    refuse(0, testing::byDepth(500, 3'000, 100'000));
}

}  // namespace
}  // namespace trimora::reliability
