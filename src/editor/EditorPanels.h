#pragma once

#include "controls/ControlContext.h"
#include "editor/EditorOutlets.h"
#include "editor/MiniMap.h"

class QWidget;

/// The panels of the editor screen, each made with all that is in it. The functions fill the outlets of
/// what they make; `parent` owns it.
namespace trimora::editor {

/// Hand, Brush and Restore, and the two size boxes under them.
void makeToolStrip(EditorOutlets& outlets, const controls::ControlContext& context, QWidget* parent);

/// Background modes, colour picker, mini-map and Save.
void makeRightPanel(EditorOutlets& outlets, const MiniMap::Services& services, QWidget* parent);

/// The panels that are called up over the cut view, with the second set of tool controls.
void makeQuickPanels(EditorOutlets& outlets, const controls::ControlContext& context, QWidget* parent);

/// The panel that floats over the cut view, with the button that fits the picture.
void makeFloatingPanel(EditorOutlets& outlets, const controls::ControlContext& context, QWidget* parent);

}  // namespace trimora::editor
