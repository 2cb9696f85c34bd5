#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cutengine/Picture.h"
#include "cutengine/PictureDecoder.h"
#include "editor/Messages.h"
#include "foundation/Queues.h"
#include "ports/Panels.h"

namespace trimora::editor {

/// How a picture comes into the editor: chosen in a panel, dropped, or named on the command line.
///
/// Of several files the first that is readable as a picture wins, and the rest is not read. Files are
/// decoded on the background queue while the window goes on; where another opening begins meanwhile,
/// the one before comes to nothing. Where no file is readable the person is told which one and why, in
/// one line, and nothing changes. What a readable file lacks (it is cut short, say) is told once.
///
/// Main thread only. What the services refer to outlives the background queue's work; the flow itself
/// may go at any time, and what it had begun then comes to nothing.
class OpenFlow {
 public:
    struct Services {
        foundation::QueueFactory& queues;
        cutengine::PictureDecoder& decoder;
        ports::Panels& panels;
        Messages& messages;
    };
    /// Takes the picture that was opened, and the file that it came from.
    using Show = std::function<void(cutengine::PicturePtr, const std::filesystem::path&)>;

    OpenFlow(const Services& services, Show show);

    /// Asks for a file, in the folder of the one before, and opens it.
    void openPicture();

    /// Opens the first readable one. An empty list changes nothing.
    void open(std::vector<std::filesystem::path> files);

    /// Whether a file is being read.
    [[nodiscard]] bool isOpening() const { return opening_ != nullptr; }

    /// The folder of the last file that was opened; empty before the first.
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

 private:
    struct Outcome {
        cutengine::PicturePtr picture;
        std::filesystem::path file;  // of the picture, or the first that was tried
        std::string remark;          // the picture's notice, or why that first one was refused
        std::size_t tried = 0;
    };
    static Outcome decodeFirst(cutengine::PictureDecoder& decoder,
                               const std::vector<std::filesystem::path>& files);
    void finish(const Outcome& outcome);

    Services services_;
    Show show_;
    std::filesystem::path folder_;
    // Held by the flow alone; work under way looks whether the one of its own beginning still lives.
    std::shared_ptr<int> opening_;
    std::shared_ptr<int> panel_ = std::make_shared<int>();
};

}  // namespace trimora::editor
