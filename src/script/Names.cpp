#include "script/Names.h"

#include <algorithm>
#include <array>

namespace trimora::script {
namespace {

using std::string_view;
using Kind = Property::Kind;

constexpr std::array<string_view, std::variant_size_v<Step>> kSteps = {
    "view",   "open",    "drop",   "mouse",  "stroke", "modifiers", "key",
    "set",    "perform", "answer", "slider", "color",  "consent",   "clock",
    "settle", "advance", "state",  "sample", "write",  "log",       "events"};
constexpr string_view kMouseTypes[] = {"down", "drag", "up", "move", "enter", "exit", "scroll"};
constexpr string_view kButtons[] = {"left", "right"};
constexpr string_view kReceivers[] = {"editor", "window", "app", "cutView"};
constexpr string_view kSliders[] = {"eraserSize", "invertSize", "sldBrushDiameter2"};
constexpr string_view kPlanes[] = {"mask", "color", "result", "picture", "view"};
constexpr string_view kPictures[] = {"result", "mask", "view", "window", "cursor"};
constexpr string_view kPanels[] = {"open", "save", "alert", "warning"};

constexpr Property kProperties[] = {
    {"brushDiameter", Kind::number}, {"brushDiameterSilent", Kind::number},
    {"brushHardness", Kind::number}, {"brushAlphaValue", Kind::number},
    {"brushColor", Kind::colour},    {"dragMode", Kind::dragMode},
    {"blurOn", Kind::flag},          {"blurMode", Kind::flag},
    {"colorMode", Kind::flag},       {"colorOn", Kind::flag},
    {"imageFit", Kind::flag},        {"scale", Kind::number},
};

constexpr string_view kEditor[] = {"hand_pressed_new:",
                                   "brush_pressed_new:",
                                   "invertBrush_pressed_new:",
                                   "handSelected:",
                                   "brushSelected:",
                                   "invertBrushSelected:",
                                   "swapBrushes:",
                                   "smallerBrush:",
                                   "largerBrush:",
                                   "hideViewWithSizeCursor",
                                   "brush_pressed:",
                                   "invertBrush_pressed:",
                                   "blur_pressed:",
                                   "brushDiameter_changed:",
                                   "anglrBrush_pressed:",
                                   "chooseEraserMode:",
                                   "chooseColorMode:",
                                   "chooseBlurMode:",
                                   "back_pressed:",
                                   "forward_pressed:",
                                   "reset_pressed:",
                                   "resetImage",
                                   "openPicture:",
                                   "open_pressed:",
                                   "openPictureNew:",
                                   "save_pressed:",
                                   "savePictureNew",
                                   "askForSave",
                                   "resetState",
                                   "copy:",
                                   "paste:",
                                   "hideInterface",
                                   "hideInterfaceNoAnimation",
                                   "showInterface",
                                   "zoomIn:",
                                   "zoomOut:",
                                   "zoomToFit:",
                                   "actualSize:"};

constexpr string_view kWindow[] = {"open_pressed:",         "save_pressed:",     "back_pressed:",
                                   "forward_pressed:",      "reset_pressed:",    "close_pressed",
                                   "performClose:",         "toggleFullScreen:", "showButton",
                                   "updateHistoryButtons:", "disableButtons",    "enableButtons"};

constexpr string_view kApp[] = {"new_pressed:",
                                "openPicture:",
                                "save_pressed:",
                                "undo_pressed:",
                                "redo_pressed:",
                                "showWindowAction:",
                                "privacyPolicyAction:",
                                "usageDataAction:",
                                "keyboardShortcutsAction:",
                                "aboutAction:",
                                "terminate:",
                                "applicationShouldHandleReopen:hasVisibleWindows:",
                                "applicationDidChangeOcclusionState:"};

constexpr string_view kCutView[] = {
    "prevHistoryState", "nextHistoryState", "clearHistory",   "recordHistoryState", "resetMask",
    "updateMap",        "updateCursor",     "drawBackground", "limitDrag",          "getResult"};

}  // namespace

string_view nameOf(const Step& step) {
    return kSteps.at(step.index());
}

std::span<const string_view> stepNames() {
    return kSteps;
}

std::span<const string_view> mouseTypes() {
    return kMouseTypes;
}

std::span<const string_view> buttons() {
    return kButtons;
}

std::span<const string_view> receivers() {
    return kReceivers;
}

std::span<const string_view> sliders() {
    return kSliders;
}

std::span<const string_view> planes() {
    return kPlanes;
}

std::span<const string_view> pictures() {
    return kPictures;
}

std::span<const string_view> panels() {
    return kPanels;
}

std::span<const Property> properties() {
    return kProperties;
}

const Property* propertyNamed(string_view name) {
    const auto* const found = std::ranges::find(kProperties, name, &Property::name);
    return found != std::end(kProperties) ? found : nullptr;
}

std::span<const string_view> selectorsOf(Receiver receiver) {
    switch (receiver) {
        case Receiver::editor:
            return kEditor;
        case Receiver::window:
            return kWindow;
        case Receiver::app:
            return kApp;
        case Receiver::cutView:
            return kCutView;
    }
    return {};
}

}  // namespace trimora::script
