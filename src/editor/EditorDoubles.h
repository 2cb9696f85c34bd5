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
#include "ports/Settings.h"
#include "ports/UserNotifications.h"
#include "ports/Workspace.h"

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

    using PictureEncoder::encodePng;
    foundation::Result<void> encodePng(const cutengine::PictureRows& picture, const Output& output) override {
        for (const char byte : bytesFor(picture.width(), picture.height())) {
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

    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override {
        questions.push_back({false, folder, "", [answer = std::move(answer)](const auto& chosen) {
                                 answer(chosen ? std::vector{*chosen} : std::vector<std::filesystem::path>());
                             }});
    }
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override {
        questions.push_back({true, folder, name, std::move(answer)});
    }

    struct AlertQuestion {
        ports::Alert alert;
        AlertAnswer answer;
    };
    std::vector<AlertQuestion> alerts;

    void runAlert(const ports::Alert& alert, AlertAnswer answer) override {
        alerts.push_back({alert, std::move(answer)});
    }
};

/// Forgets when it goes.
class MemorySettings final : public ports::Settings {
 public:
    std::map<std::string, std::string, std::less<>> texts;
    std::map<std::string, std::vector<std::string>, std::less<>> lists;

    std::optional<std::string> text(std::string_view key) const override {
        const auto found = texts.find(key);
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
    void setText(std::string_view key, const std::string& text) override { texts[std::string(key)] = text; }
    std::vector<std::string> list(std::string_view key) const override {
        const auto found = lists.find(key);
        return found == lists.end() ? std::vector<std::string>{} : found->second;
    }
    void setList(std::string_view key, const std::vector<std::string>& list) override {
        lists[std::string(key)] = list;
    }
};

/// Keeps what was posted; the test is the person who answers.
class RecordedNotifications final : public ports::UserNotifications {
 public:
    std::vector<ports::UserNotification> posted;
    Activated activated;

    void post(const ports::UserNotification& notification) override { posted.push_back(notification); }
    void onActivation(Activated handler) override { activated = std::move(handler); }
};

/// A desktop that only takes notes.
class RecordedWorkspace final : public ports::Workspace {
 public:
    std::vector<std::filesystem::path> revealed;
    std::vector<std::string> opened;

    void revealFile(const std::filesystem::path& file) override { revealed.push_back(file); }
    void openUrl(const std::string& url) override { opened.push_back(url); }
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
