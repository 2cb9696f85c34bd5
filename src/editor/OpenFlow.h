#pragma once

#include <QCoreApplication>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cutengine/Picture.h"
#include "cutengine/PictureDecoder.h"
#include "cutengine/imageutil/PictureActions.h"
#include "editor/Messages.h"
#include "foundation/Queues.h"
#include "ports/Panels.h"
#include "ports/Settings.h"

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
    Q_DECLARE_TR_FUNCTIONS(OpenFlow)

 public:
    struct Services {
        foundation::QueueFactory& queues;
        cutengine::PictureDecoder& decoder;
        ports::Panels& panels;
        Messages& messages;
        ports::Settings* settings = nullptr;  ///< remembers the folder for the next run, where there is one
        /// How to wait for a file that is still being written; without it none is waited for.
        std::optional<cutengine::Patience> patience = {};
    };
    /// Whether the files may still be in the making.
    enum class Files : std::uint8_t { complete, inTheMaking };
    /// Takes the picture that was opened, as one bitmap of its own size, and the file that it came from.
    using Show = std::function<void(cutengine::PicturePtr, const std::filesystem::path&)>;
    /// Takes the file that the person was told about.
    using Refused = std::function<void(const std::filesystem::path&)>;

    OpenFlow(const Services& services, Show show);

    /// Called where no file of an opening was readable, after the person was told.
    void onRefusal(Refused refused) { refused_ = std::move(refused); }

    /// Asks for a file, in the folder of the one before, and opens it; `chosen` is called in between. While
    /// that is being asked already nothing happens.
    void openPicture(std::function<void()> chosen = {});

    /// Opens the first readable one. An empty list changes nothing.
    void open(std::vector<std::filesystem::path> files, Files state = Files::complete);

    /// Whether a file is being read.
    [[nodiscard]] bool isOpening() const { return opening_ != nullptr; }

    /// The folder of the last file that was opened, in this run or an earlier one; empty before the first.
    [[nodiscard]] std::filesystem::path folder() const;

 private:
    struct Outcome {
        cutengine::PicturePtr picture;
        std::filesystem::path file;  // of the picture, or the first that was tried
        std::string remark;          // the picture's notice, or why that first one was refused
        std::size_t tried = 0;
    };
    static cutengine::LoadedPicture load(const Services& services, const std::filesystem::path& file,
                                         Files state);
    static Outcome loadFirst(const Services& services, const std::vector<std::filesystem::path>& files,
                             Files state);
    void finish(const Outcome& outcome, Files state);
    void refuse(const Outcome& outcome);

    Services services_;
    Show show_;
    Refused refused_;
    std::filesystem::path folder_;
    // Held by the flow alone; work under way looks whether the one of its own beginning still lives.
    std::shared_ptr<int> opening_;
    bool panelIsOpen_ = false;
    std::shared_ptr<int> panel_ = std::make_shared<int>();
};

}  // namespace trimora::editor
