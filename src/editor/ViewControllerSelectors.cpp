// Every message that the editor screen's controller answers to, by its selector.

#include "editor/ViewControllerParts.h"

#include <utility>

namespace trimora::editor {

util::RuntimeClassPtr ViewController::makeClass() {
    static const util::RuntimeClassPtr record = [] {
        util::RuntimeClassPtr made = util::RuntimeClass::create("ViewController");
        // The first message makes the screen.
        const auto on = [&made](const char* selector, auto action) {
            made->overrideSelector(selector, [action](RuntimeObject& self, const std::any&) -> std::any {
                auto& controller = static_cast<ViewController&>(self);
                action(controller, controller.parts());
                return {};
            });
        };
        using C = ViewController;
        using P = Parts;

        // Tools
        on("hand_pressed_new:", [](C&, P& p) { p.tools.hand_pressed_new(); });
        on("brush_pressed_new:", [](C&, P& p) { p.tools.brush_pressed_new(); });
        on("invertBrush_pressed_new:", [](C&, P& p) { p.tools.invertBrush_pressed_new(); });
        on("handSelected:", [](C&, P& p) { p.tools.handSelected(); });
        on("brushSelected:", [](C&, P& p) { p.tools.brushSelected(); });
        on("invertBrushSelected:", [](C&, P& p) { p.tools.invertBrushSelected(); });
        on("swapBrushes:", [](C&, P& p) { p.tools.swapBrushes(); });
        on("smallerBrush:", [](C&, P& p) { p.tools.smallerBrush(); });
        on("largerBrush:", [](C&, P& p) { p.tools.largerBrush(); });
        on("hideViewWithSizeCursor", [](C&, P& p) { p.tools.hideViewWithSizeCursor(); });

        // Quick controls
        on("brush_pressed:", [](C&, P& p) { p.tools.brush_pressed(); });
        on("invertBrush_pressed:", [](C&, P& p) { p.tools.invertBrush_pressed(); });
        on("blur_pressed:", [](C&, P& p) { p.tools.blur_pressed(); });
        on("brushDiameter_changed:", [](C&, P& p) { p.tools.brushDiameter_changed(); });
        on("anglrBrush_pressed:", [](C& c, P&) { c.showBrushMenu(); });

        // Background
        on("chooseEraserMode:", [](C&, P& p) { p.modes.chooseEraserMode(); });
        on("chooseColorMode:", [](C&, P& p) { p.modes.chooseColorMode(); });
        on("chooseBlurMode:", [](C&, P& p) { p.modes.chooseBlurMode(); });

        // History
        on("back_pressed:", [](C& c, P&) { c.back_pressed(); });
        on("forward_pressed:", [](C& c, P&) { c.forward_pressed(); });
        on("reset_pressed:", [](C& c, P&) { c.reset_pressed(); });
        on("resetImage", [](C& c, P&) { c.resetImage(); });

        // Pictures
        on("openPicture:", [](C&, P& p) { p.flows.openPicture(); });
        on("open_pressed:", [](C& c, P&) { c.performSelector("openPicture:"); });
        on("openPictureNew:", [](C& c, P&) { c.performSelector("openPicture:"); });
        on("save_pressed:", [](C&, P& p) { p.flows.save_pressed(); });
        on("savePictureNew", [](C& c, P&) { c.performSelector("save_pressed:"); });
        on("askForSave", [](C&, P& p) { p.flows.askForSave(); });
        made->overrideSelector("askForSaveThen:", [](RuntimeObject& self, const std::any& then) -> std::any {
            static_cast<C&>(self).parts().flows.askForSaveThen(std::any_cast<foundation::Task>(then));
            return {};
        });
        on("resetState", [](C&, P& p) { p.flows.resetState(); });
        on("copy:", [](C&, P& p) { p.flows.copy(); });
        on("paste:", [](C&, P& p) { p.flows.paste(); });

        // Panels
        on("hideInterface", [](C&, P& p) { p.panels.hideInterface(); });
        on("hideInterfaceNoAnimation", [](C&, P& p) { p.panels.hideInterfaceNoAnimation(); });
        on("showInterface", [](C&, P& p) { p.panels.showInterface(); });

        // Zoom
        on("zoomIn:", [](C&, P& p) { p.zoom.zoomIn(); });
        on("zoomOut:", [](C&, P& p) { p.zoom.zoomOut(); });
        on("zoomToFit:", [](C&, P& p) { p.zoom.zoomToFit(); });
        on("actualSize:", [](C&, P& p) { p.zoom.actualSize(); });
        return made;
    }();
    return record;
}

}  // namespace trimora::editor
