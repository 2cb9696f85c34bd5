#pragma once

class QLineEdit;

namespace trimora::controls {

/// Gives a field to type into the look that all have: its box, its text, and the line round it that tells
/// where the keyboard is. It takes effect when the field is first shown, so that a window does not wait for
/// the looks of fields that it hides. Main thread.
void giveFieldLook(QLineEdit& field);

}  // namespace trimora::controls
