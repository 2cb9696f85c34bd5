#include "editor/InterfacePanels.h"

#include "controls/LayerButton.h"

namespace trimora::editor {
namespace {

constexpr double kVariant1Hidden = -50;

}  // namespace

void InterfacePanels::hideInterface(const PanelMotion& motion) {
    EditorConstraints& constraints = screen_.constraints();
    const EditorOutlets& outlets = screen_.outlets();
    constraints.constrLeftPanelLeading.animateTo(kVariant1Hidden, motion);
    constraints.constrLeftPanelLeading2.animateTo(-outlets.viLeftPanelVariant2->width(), motion);
    constraints.constrRightPanelTrailing2.animateTo(-outlets.viRightPanelVariant2->width(), motion);
}

void InterfacePanels::hideInterfaceNoAnimation() {
    hideInterface({0, controls::TimingCurve::linear()});
}

void InterfacePanels::showInterface(const PanelMotion& motion) {
    EditorConstraints& constraints = screen_.constraints();
    constraints.constrLeftPanelLeading.animateTo(0, motion);
    constraints.constrLeftPanelLeading2.animateTo(0, motion);
    constraints.constrRightPanelTrailing2.animateTo(0, motion);
}

void InterfacePanels::showRightPanel() {
    screen_.constraints().constrRightPanelWithMode.animateTo(0, kStandardMotion);
}

void InterfacePanels::slideSaveOut() {
    screen_.constraints().constrBtnSaveBottom.animateTo(-screen_.outlets().btnSave->height(),
                                                        kStandardMotion);
}

void InterfacePanels::slideSaveIn() {
    screen_.constraints().constrBtnSaveBottom.animateTo(0, kStandardMotion);
}

}  // namespace trimora::editor
