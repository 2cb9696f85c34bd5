#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

#include "cutengine/CutViewForTests.h"
#include "files/FilesForTests.h"

namespace trimora::reliability {

/// The size of a mask and its pixels, to be compared.
inline std::string pixelsOf(const foundation::Bitmap& mask) {
    std::string pixels = std::to_string(mask.width()) + "x" + std::to_string(mask.height()) + " ";
    for (int y = 0; y < mask.height(); ++y)
        pixels.append(reinterpret_cast<const char*>(mask.view().row(y)),
                      static_cast<std::size_t>(mask.width()) * 4);
    return pixels;
}

/// A cut view on a history folder, in which a person works.
class HistoryEditor {
 public:
    explicit HistoryEditor(const std::filesystem::path& folder)
        : view({queues_, time_, notifications_, folder}, host_) {
        view.setViewSize({200, 150});
    }

    void open() {
        view.setImage(cutengine::Picture::create(
            foundation::Bitmap::createFilled(100, 75, {128, 128, 128, 255}, foundation::AlphaMode::opaque)
                .value()));
        queues_.settle();
    }
    void stroke(double x, double y) {
        view.mouseDown({cutengine::MouseButton::left, {x, y}});
        view.mouseUp({cutengine::MouseButton::left, {x, y}});
        queues_.settle();
    }
    void undo() {
        view.prevHistoryState();
        queues_.settle();
    }
    void redo() {
        view.nextHistoryState();
        queues_.settle();
    }
    /// Strokes, undos, redos and resets by chance, `noted` after each with what is shown.
    template <typename Noted>
    void work(std::uint64_t seed, const Noted& noted) {
        std::mt19937_64 random(seed);
        open();
        noted(view.copyMaskPlane());
        for (int i = 0; i < 40; ++i) {
            step(random);
            noted(view.copyMaskPlane());
        }
    }
    /// One of them.
    void step(std::mt19937_64& random) {
        switch (random() % 8) {
            case 0:
                undo();
                break;
            case 1:
                redo();
                break;
            case 2:
                view.resetMask();
                queues_.settle();
                break;
            default:
                stroke(static_cast<double>(random() % 200), static_cast<double>(random() % 150));
        }
    }

 private:
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    cutengine::RecordingHost host_;

 public:
    cutengine::RKImageCutView view;
};

/// Begins with a history folder that an editor left which did not get to its end, and leaves one that is in
/// use.
inline void expectToBeginWell(const std::filesystem::path& folder) {
    HistoryEditor next(folder);
    next.open();
    EXPECT_EQ(next.view.historyLength(), 1);
    EXPECT_EQ(files::entriesIn(folder), 1U);
    const std::string untouched = pixelsOf(next.view.copyMaskPlane());
    next.stroke(100, 75);
    EXPECT_NE(pixelsOf(next.view.copyMaskPlane()), untouched);
    next.undo();
    EXPECT_EQ(pixelsOf(next.view.copyMaskPlane()), untouched);
}

}  // namespace trimora::reliability
