#pragma once

#include <QMainWindow>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/Commands.h"
#include "cutengine/Colour.h"
#include "cutengine/CutViewHost.h"
#include "cutengine/PictureEncoder.h"
#include "cutengine/RKImageCutView.h"
#include "editor/CutViewWidget.h"
#include "editor/OpenFlow.h"
#include "editor/SaveFlow.h"

namespace trimora::controls {
class SizeControl;
}
namespace trimora::editor {
class EmptyHint;
}

namespace trimora::app {

class StatusLine;

/// The window: the cut view between its panels, and what each command does to it.
///
/// Save is enabled from the first stroke on a picture; undo, redo and restore follow the history's
/// counters. A picture that is opened keeps tool and background as they are.
///
/// Main thread only. What the services refer to outlives the window and the work that it began.
class EditorWindow final : public QMainWindow, private cutengine::RKImageCutViewDelegate {
 public:
    struct Services {
        cutengine::RKImageCutView::Services cutView;
        cutengine::PictureDecoder& decoder;
        cutengine::PictureEncoder& encoder;
        ports::Panels& panels;
    };

    explicit EditorWindow(const Services& services);
    ~EditorWindow() override;

    /// Opens the first readable one of these files.
    void open(std::vector<std::filesystem::path> files) { openFlow_.open(std::move(files)); }

    /// Saves the result as it is now, without asking where.
    void saveTo(const std::filesystem::path& file) { saveFlow_.saveTo(file); }

    /// Whether a file is being read or written.
    [[nodiscard]] bool isBusy() const { return openFlow_.isOpening() || saveFlow_.isSaving(); }

    /// Does what the command's menu item does.
    void run(Command command);

    [[nodiscard]] editor::CutViewWidget& cutView() { return *cutView_; }
    [[nodiscard]] const Commands& commands() const { return commands_; }
    [[nodiscard]] controls::SizeControl& brushSize() { return *size_; }
    [[nodiscard]] const StatusLine& statusLine() const { return *status_; }

 private:
    // cutengine::RKImageCutViewDelegate
    void cutViewWillStartDraw(cutengine::RKImageCutView* view) override;
    void cutViewDidEndDraw(cutengine::RKImageCutView* view) override;
    void cutViewDidChangeHistoryState(cutengine::RKImageCutView* view) override;
    void cutView_didChangeBrushDiameter(cutengine::RKImageCutView* view, float diameter) override;
    void RectBorderForMiniMap(cutengine::RKImageCutView* view, float SootnX, float SootnY, float SizeW,
                              float SizeH) override;

    void buildLayout();
    void connectCutView();
    void showPicture(cutengine::PicturePtr picture, const std::filesystem::path& file);
    void chooseTool(Command tool);
    void changeBrush(int by);
    void showBackground();
    void chooseColour();
    void setColour(const cutengine::Colour& colour);
    void zoom(double deltaY);
    void zoomToFit();
    void updateEnabled();
    void showShortcuts();
    void showAbout();
    [[nodiscard]] cutengine::RKImageCutView& view() { return cutView_->view(); }

    Commands commands_;
    controls::SizeControl* size_;
    StatusLine* status_;
    cutengine::Colour colour_{1, 1, 1, 1};
    std::filesystem::path pictureFolder_;
    bool drawn_ = false;  // a stroke has begun on this picture
    std::unique_ptr<editor::CutViewWidget> cutView_;
    editor::EmptyHint* hint_;
    editor::OpenFlow openFlow_;
    editor::SaveFlow saveFlow_;
};

}  // namespace trimora::app
