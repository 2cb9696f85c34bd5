#pragma once

#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "SavingForTests.h"
#include "codecs/PictureFileDecoder.h"
#include "cutengine/CutViewForTests.h"

namespace trimora::reliability {

/// A person at work with the engine: opens a picture, cuts, steps back and forth, blurs and saves, on queues
/// that are pumped in between.
class EngineUse {
 public:
    /// Leaves the picture in the folder, which is the person's and the engine's.
    explicit EngineUse(const std::filesystem::path& folder)
        : source_(folder / "source.png"),
          target_(folder / "target.png"),
          view({queues_, time_, notifications_, folder / "history"}, host) {
        (void)savePng(bandedPicture(450, 350).view(), source_);
        view.setViewSize({400, 300});
    }

    /// Each thing that a person does comes from outside, where a thing that cannot be done for want of memory
    /// ends and the next one begins.
    void work() {
        each([this] { open(); });
        stroke({100, 100}, {200, 150});
        each([this] { view.prevHistoryState(); });
        each([this] { view.nextHistoryState(); });
        each([this] {
            view.setBlurOn(true);
            view.drawBackground();
        });
        each([this] {
            if (const auto result = view.getResult())
                (void)savePng(result->bestRepresentation()->view(), target_);
        });
    }
    /// Whether a new picture can be cut and the cut is kept for undo.
    [[nodiscard]] bool works() {
        view.setImage(cutengine::Picture::create(bandedPicture(400, 300)));
        queues_.settle();
        const foundation::Bitmap before = view.copyMaskPlane();
        stroke({200, 150}, {210, 150});
        const foundation::Bitmap after = view.copyMaskPlane();
        return view.historyLength() == 2 && !after.isEmpty() && before.pixel(200, 150).alpha == 255 &&
               after.pixel(200, 150).alpha == 0 && view.getResult() != nullptr;
    }
    [[nodiscard]] const std::filesystem::path& target() const { return target_; }

    cutengine::RecordingHost host;

 private:
    template <typename Step>
    void each(const Step& step) {
        try {
            step();
            queues_.settle();
        } catch (const std::bad_alloc&) {
            ++notDone;
        }
    }
    void open() {
        auto read = decoder_.decode(source_);
        view.setImage(read ? cutengine::Picture::create(std::move(read->representations.front())) : nullptr);
    }
    void stroke(foundation::Point from, foundation::Point to) {
        using cutengine::MouseButton;
        each([&] { view.mouseDown({MouseButton::left, from}); });
        each([&] { view.mouseDragged({MouseButton::left, to, to.x - from.x, from.y - to.y}); });
        each([&] { view.mouseUp({MouseButton::left, to}); });
    }

    std::filesystem::path source_;
    std::filesystem::path target_;
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    foundation::InlineWorkers workers_;
    codecs::PictureFileDecoder decoder_{workers_, codecs::PixelBudget(4'000'000)};

 public:
    cutengine::RKImageCutView view;
    int notDone = 0;  ///< things that were asked for and not done for want of memory
};

}  // namespace trimora::reliability
