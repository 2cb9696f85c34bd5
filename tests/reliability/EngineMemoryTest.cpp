#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "AllocationFaults.h"
#include "Processes.h"
#include "SavingForTests.h"
#include "codecs/PictureFileDecoder.h"
#include "cutengine/CutViewForTests.h"
#include "files/FilesForTests.h"

// The cut view and the codecs where memory for pictures runs out: every block from a hundred kilobytes on is
// refused in turn. The program goes on, and a person who then has memory can work again.
namespace trimora::reliability {
namespace {

using cutengine::CutViewTest;
using foundation::Bitmap;

constexpr std::size_t kLargeBlock = 100'000;

class EngineMemory : public CutViewTest {
 protected:
    /// Opens, cuts, steps back and forth, and saves; as far as that goes.
    void useEngine() {
        const auto read = decoder_.decode(source_);
        if (read) {
            auto pixels = read->representations.front().clone();
            view.setImage(pixels ? cutengine::Picture::create(std::move(*pixels)) : nullptr);
        } else {
            EXPECT_FALSE(read.error().message.empty());
        }
        queues.settle();
        stroke({{100, 100}, {200, 150}});
        view.prevHistoryState();
        queues.settle();
        view.nextHistoryState();
        queues.settle();
        view.setBlurOn(true);
        view.drawBackground();
        queues.settle();
        if (const auto result = view.getResult())
            (void)savePng(result->bestRepresentation()->view(), target_);
    }
    [[nodiscard]] bool works() {
        load(400, 300);
        stroke({{200, 150}});
        return view.historyLength() == 2 && maskAt({200, 150}) == 0 && view.getResult() != nullptr;
    }

    std::filesystem::path source_ = home.path() / "source.png";
    std::filesystem::path target_ = home.path() / "target.png";
    foundation::InlineWorkers workers_;
    codecs::PictureFileDecoder decoder_{workers_, codecs::PixelBudget(4'000'000)};
};

TEST_F(EngineMemory, ThatRunsOutForPicturesIsBorne) {
    ASSERT_TRUE(savePng(bandedPicture(450, 350).view(), source_));
    std::int64_t total = 0;
    {
        const AllocationFaults counted(0, false, kLargeBlock);
        useEngine();
        total = AllocationFaults::count();
    }
    ASSERT_GT(total, 20);
    const std::string whole = files::contents(target_);
    int points = 0;
    for (const bool forEver : {false, true}) {
        for (std::int64_t number = 1; number <= total; ++number) {
            files::put(target_, "old");
            foundation::PixelBuffer::trimStock();
            const Ended ended = inOwnProcess([&] {
                {
                    const AllocationFaults faults(number, forEver, kLargeBlock);
                    useEngine();
                }
                return works() ? 0 : 1;
            });
            ++points;
            EXPECT_EQ(ended.text(), "exit 0")
                << "large block " << number << (forEver ? " and all after" : "");
            const std::string saved = files::contents(target_);
            EXPECT_TRUE(saved == "old" || saved.starts_with("\x89PNG"));
        }
    }
    std::printf("%lld large blocks, %d points\n", static_cast<long long>(total), points);
}

}  // namespace
}  // namespace trimora::reliability
