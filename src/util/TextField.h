#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QString>

namespace trimora::util {

class ValueControl;

/// A text field for a number, which may drive a control and mirror it.
///
/// What is typed is rewritten in the field's format at every keystroke, the caret keeping its place in
/// the number. It counts once it is committed: with Return, or when the keyboard goes elsewhere after
/// an edit. Escape shows the control's value again. Numbers are read and shown with "." in every
/// locale; "," is read as ".". Main thread only.
class TextField : public QLineEdit {
 public:
    explicit TextField(QWidget* parent = nullptr);
    ~TextField() override;

    /// Binds field and control to each other, both ways. Null ends it on this side.
    void setControl(ValueControl* control);
    void boundWithControl(ValueControl* control) { setControl(control); }
    [[nodiscard]] ValueControl* control() const;

    /// How numbers are shown: "decimal" is a whole number with "%" behind it, anything else a number
    /// with up to two digits after the point.
    void setShowMode(const QString& mode) { showMode_ = mode; }
    [[nodiscard]] const QString& showMode() const { return showMode_; }

    /// The number that the text begins with, 0 where it begins with none.
    [[nodiscard]] float floatValue() const;

    /// Shows the number in the field's format.
    void setFloatValue(float value);

    /// Shows the number in a format of printf's for one floating-point value, such as "%.1f px".
    void setFloat(float value, const char* format);

    /// The text was edited by the person. With a control, and not in mode "decimal": rewrites the
    /// number, unless it ends in a separator and is still being typed.
    virtual void textDidChange();

    /// The text is to count. With a control: sets the number on it, sends its action, and shows what
    /// it made of it; a text that ends in a separator is left alone. Without: keeps the text.
    virtual void textDidEndEditing();

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    /// Return has committed the text: the field keeps the keyboard, its text selected.
    virtual void didCommit() { selectAll(); }

    /// The text with every "," replaced by ".".
    [[nodiscard]] QString textWithPoints() const;

    /// Shows another text, the caret as far from the end of its number as it was in the old one.
    void rewrite(const QString& text);

    /// A number in the field's format.
    [[nodiscard]] QString formatted(float value) const;

 private:
    [[nodiscard]] bool showsPercent() const;

    QPointer<ValueControl> control_;
    QString showMode_;
    bool edited_ = false;
};

/// The text without "%" at its beginning and its end.
[[nodiscard]] QString trimmedOfPercent(const QString& text);

}  // namespace trimora::util
