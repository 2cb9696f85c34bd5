#pragma once

#include "editor/BackgroundModes.h"
#include "editor/DragView.h"
#include "editor/EditorTools.h"
#include "editor/InterfacePanels.h"
#include "editor/PictureEyedropper.h"
#include "editor/PictureFlows.h"
#include "editor/SaveState.h"
#include "editor/ViewController.h"
#include "editor/ViewZoom.h"

namespace trimora::editor {

/// What works on the editor screen, for the sources of ViewController alone.
struct ViewController::Parts final : DragViewDelegate {
    Parts(ViewController& controller, EditorView& editorScreen);
    virtual ~Parts() = default;

    /// Drops may land on a picture with work on it.
    void draggingFilesComplete_needsWait(const Files& urls, bool wait) override {
        flows.openFiles(urls, wait);
    }

    EditorView& screen;
    InterfacePanels panels;
    EditorTools tools;
    BackgroundModes modes;
    ViewZoom zoom;
    SaveState saveState;
    PictureFlows flows;
    PictureEyedropper eyedropper;
};

}  // namespace trimora::editor
