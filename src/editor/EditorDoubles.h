#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cutengine/Picture.h"
#include "cutengine/PictureDecoder.h"
#include "cutengine/PictureEncoder.h"
#include "editor/Messages.h"
#include "ports/Panels.h"

/// In-memory doubles of what the editor works with, for tests of this floor and of those above.
namespace trimora::editor {

/// An opaque picture of one colour.
inline cutengine::PicturePtr plainPicture(int width, int height,
                                          foundation::Pixel colour = {90, 60, 30, 255}) {
    auto bitmap =
        foundation::Bitmap::createFilled(width, height, colour, foundation::AlphaMode::premultiplied);
    return cutengine::Picture::create(std::move(*bitmap));
}

/// Knows some files and refuses the others.
class FakeDecoder final : public cutengine::PictureDecoder {
 public:
    struct File {
        int width = 0;
        int height = 0;
        std::string notice;
    };
    std::map<std::filesystem::path, File> files;
    std::vector<std::filesystem::path> asked;

    foundation::Result<cutengine::DecodedPicture> decode(const std::filesystem::path& file) override {
        asked.push_back(file);
        const auto found = files.find(file);
        if (found == files.end())
            return foundation::Error{"it is not a picture"};
        auto bitmap =
            foundation::Bitmap::createFilled(found->second.width, found->second.height, {90, 60, 30, 255});
        cutengine::DecodedPicture decoded;
        decoded.representations.push_back(std::move(*bitmap));
        decoded.notice = found->second.notice;
        return decoded;
    }
};

/// Writes some bytes that tell the picture's size; fails in the middle of them where told to.
class FakeEncoder final : public cutengine::PictureEncoder {
 public:
    std::optional<foundation::Error> failure;

    static std::string bytesFor(int width, int height) {
        return "picture " + std::to_string(width) + "x" + std::to_string(height);
    }

    foundation::Result<void> encodePng(foundation::BitmapView picture, const Output& output) override {
        for (const char byte : bytesFor(picture.width, picture.height)) {
            const auto octet = static_cast<std::uint8_t>(byte);
            if (auto written = output({&octet, 1}); !written)
                return written;
            if (failure)
                return *failure;
        }
        return {};
    }
};

/// Keeps what it is asked; the test answers.
class FakePanels final : public ports::Panels {
 public:
    struct Question {
        bool saves = false;
        std::filesystem::path folder;
        std::string name;
        Answer answer;
    };
    std::vector<Question> questions;

    void chooseFileToOpen(const std::filesystem::path& folder, Answer answer) override {
        questions.push_back({false, folder, "", std::move(answer)});
    }
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override {
        questions.push_back({true, folder, name, std::move(answer)});
    }
};

/// Every line that the person was shown, after a word for its kind.
class RecordedMessages final : public Messages {
 public:
    std::vector<std::string> lines;

    void progress(const std::string& line) override { lines.push_back("progress: " + line); }
    void note(const std::string& line) override { lines.push_back("note: " + line); }
    void trouble(const std::string& line) override { lines.push_back("trouble: " + line); }
};

}  // namespace trimora::editor
