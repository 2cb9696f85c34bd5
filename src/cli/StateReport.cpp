#include "cli/StateReport.h"

#include <algorithm>
#include <charconv>
#include <variant>

#include "app/ToolbarItem.h"
#include "controls/ColorPickerView.h"
#include "controls/CustomViewWithButton.h"
#include "controls/KrugButton.h"
#include "editor/CursorPreview.h"
#include "editor/CutViewWidget.h"
#include "editor/DragView.h"
#include "editor/EditorTools.h"
#include "editor/MiniMap.h"
#include "editor/PictureFlows.h"

namespace trimora {
namespace {

using cutengine::RKImageCutView;

/// What happens to be there in the folder of the history, in the order of the numbers.
Json historyFiles(const RKImageCutView& view) {
    std::vector<std::pair<int, std::string>> found;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator(view.historyDirectory(), failure)) {
        const std::string name = entry.path().filename().string();
        int number = -1;
        if (entry.path().extension() == ".his")
            std::from_chars(name.data(), name.data() + name.size(), number);
        if (number >= 0)
            found.emplace_back(number, name);
    }
    std::sort(found.begin(), found.end());
    Json names = Json::array();
    for (const auto& [number, name] : found)
        names.push_back(name);
    return names;
}

Json planes(const RKImageCutView& view) {
    const auto shown = view.mask();
    return shown != nullptr ? Json::array({shown->width(), shown->height()}) : Json();
}

Json brushColor(const RKImageCutView& view) {
    const auto& colour = view.brushColor();
    if (!colour)
        return nullptr;
    return Json::array({jsonNumber(colour->red), jsonNumber(colour->green), jsonNumber(colour->blue),
                        jsonNumber(colour->alpha)});
}

const char* cursor(const RKImageCutView& view) {
    switch (view.cursorKind()) {
        case cutengine::Cursor::Kind::arrow:
            return "arrow";
        case cutengine::Cursor::Kind::openHand:
            return "openHand";
        case cutengine::Cursor::Kind::closedHand:
            return "closedHand";
        case cutengine::Cursor::Kind::brush:
            return "brush";
    }
    return "arrow";
}

const char* background(const RKImageCutView& view) {
    if (view.bluredLayer() == nullptr || view.bluredLayer()->isHidden())
        return "hidden";
    return view.isBlurOn() ? "blur" : "color";
}

Json transform(const RKImageCutView& view) {
    const foundation::AffineTransform t = view.transform();
    return Json::array({jsonNumber(t.a), jsonNumber(t.b), jsonNumber(t.c), jsonNumber(t.d), jsonNumber(t.tx),
                        jsonNumber(t.ty)});
}

void addCutView(Json& state, const RKImageCutView& view) {
    state["image"] = view.image() != nullptr ? jsonSize(view.image()->size()) : Json();
    state["planes"] = planes(view);
    state["maskScale"] = jsonNumber(view.maskScale());
    state["historyLength"] = view.historyLength();
    state["historyCurrentState"] = view.historyCurrentState();
    state["historyFileIndex"] = view.historyFileIndex();
    state["historyFiles"] = historyFiles(view);
    state["brushDiameter"] = jsonNumber(view.brushDiameter());
    state["brushHardness"] = jsonNumber(view.brushHardness());
    state["brushAlphaValue"] = jsonNumber(view.brushAlphaValue());
    state["brushColor"] = brushColor(view);
    state["dragMode"] = static_cast<int>(view.dragMode());
    state["blurOn"] = view.isBlurOn();
    state["blurMode"] = view.blurMode();
    state["colorMode"] = view.colorMode();
    state["colorOn"] = view.isColorOn();
    state["imageFit"] = view.imageFit();
    state["scale"] = jsonNumber(view.scale());
    state["viewSize"] = jsonSize(view.viewSize());
    state["transform"] = transform(view);
    state["cursor"] = cursor(view);
    state["background"] = background(view);
}

void addToolbar(Json& state, const app::WindowController::Outlets& toolbar) {
    Json& enabled = state["enabled"] = Json::object();
    enabled["btnOpen"] = toolbar.btnOpen->isEnabled();
    enabled["btnSave"] = toolbar.btnSave->isEnabled();
    enabled["btnBack"] = toolbar.btnBack->isEnabled();
    enabled["btnForward"] = toolbar.btnForward->isEnabled();
    enabled["btnRestoreImage"] = toolbar.btnRestoreImage->isEnabled();
}

/// Whether a view was hidden itself, whatever it lies in.
bool isHidden(const QWidget& view) {
    return view.testAttribute(Qt::WA_WState_ExplicitShowHide) && view.isHidden();
}

void addHidden(Json& state, const editor::EditorOutlets& outlets, const QWidget& viewHistory) {
    Json& hidden = state["hidden"] = Json::object();
    hidden["viDrug"] = isHidden(*outlets.viDrug);
    hidden["viewHistory"] = isHidden(viewHistory);
    hidden["colorPickerView"] = isHidden(*outlets.colorPickerView);
    hidden["ViewForCursor"] = isHidden(*outlets.ViewForCursor);
    hidden["eraserViewSettings"] = isHidden(*outlets.eraserViewSettings);
    hidden["invertViewSettings"] = isHidden(*outlets.invertViewSettings);
    hidden["CustomViewWithButton"] = isHidden(*outlets.viewWithButton);
}

void addImages(Json& state, const editor::EditorOutlets& outlets) {
    const std::pair<const char*, const controls::LayerButton*> buttons[] = {
        {"btnHandNew", outlets.btnHandNew},
        {"btnEraserNew", outlets.btnEraserNew},
        {"btnEraserHistoryNew", outlets.btnEraserHistoryNew},
        {"btnEraserMode", outlets.btnEraserMode},
        {"btnColorMode", outlets.btnColorMode},
        {"btnBlurMode", outlets.btnBlurMode},
        {"btnBrush", outlets.btnBrush},
        {"btnInvertBrush", outlets.btnInvertBrush},
        {"btnBlur", outlets.btnBlur},
        {"btnBrush2", outlets.btnBrush2},
        {"btnInvertBrush2", outlets.btnInvertBrush2},
        {"btnBlur2", outlets.btnBlur2},
    };
    Json images = Json::object();
    Json alternates = Json::object();
    for (const auto& [name, button] : buttons) {
        images[name] = button->image().toStdString();
        alternates[name] = button->alternateImage().toStdString();
    }
    state["images"] = std::move(images);
    state["alternateImages"] = std::move(alternates);
}

void addConstraints(Json& state, const editor::EditorConstraints& all) {
    Json& constants = state["constraints"] = Json::object();
    constants["constrLeftPanelLeading"] = jsonNumber(all.constrLeftPanelLeading.constant());
    constants["constrLeftPanelLeading2"] = jsonNumber(all.constrLeftPanelLeading2.constant());
    constants["constrRightPanelTrailing2"] = jsonNumber(all.constrRightPanelTrailing2.constant());
    constants["constrRightPanelWithMode"] = jsonNumber(all.constrRightPanelWithMode.constant());
    constants["constrBtnSaveBottom"] = jsonNumber(all.constrBtnSaveBottom.constant());
    constants["widthMainViewConstraint"] = jsonNumber(all.widthMainViewConstraint.constant());
    constants["heightMainViewConstraint"] = jsonNumber(all.heightMainViewConstraint.constant());
}

Json notifications(const ScriptedProgram& program) {
    Json list = Json::array();
    for (const ports::UserNotification& each : program.notifications())
        list.push_back({{"title", each.title}, {"subtitle", each.subtitle}, {"text", each.informativeText}});
    return list;
}

}  // namespace

Json stateReport(ScriptedProgram& program) {
    editor::ViewController& editor = program.editor();
    const editor::EditorOutlets& outlets = editor.outlets();
    const auto& toolbar = program.shell().windowController().outlets();
    Json state;
    addCutView(state, program.cutView());
    addToolbar(state, toolbar);
    addHidden(state, outlets, toolbar.viewHistory->view());
    addImages(state, outlets);
    addConstraints(state, editor.constraints());
    state["miniMap"] = jsonRect(outlets.miniMap->testboirder().frame());
    state["miniMapFrame"] = jsonSize(outlets.miniMap->miniMapImage().frame().size());
    state["eraserSizeValue"] = jsonNumber(editor.tools().eraserSizeValue());
    state["invertSizeValue"] = jsonNumber(editor.tools().invertSizeValue());
    state["windowVisible"] = program.shell().window().isShown();
    const auto& proposed = editor.flows().saveFlow().proposedName();
    state["proposedName"] = proposed ? Json(*proposed) : Json();
    state["messages"] = program.messages();
    state["notifications"] = notifications(program);
    return state;
}

}  // namespace trimora
