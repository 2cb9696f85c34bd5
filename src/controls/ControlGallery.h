#pragma once

#include <QWidget>
#include <vector>

#include "controls/ControlContext.h"

namespace trimora::controls {

class LayerButton;

/// One screen with every button of the family in every state it can be seen in, for whoever works on
/// their looks: a row a button; columns at rest, under the pointer, held down, reached by the keyboard,
/// disabled. The colour picker stands beside them.
///
/// The states are put on when the gallery is shown and stay until a real pointer touches the button.
class ControlGallery final : public QWidget {
 public:
    explicit ControlGallery(const ControlContext& context, QWidget* parent = nullptr);
    ~ControlGallery() override;

 protected:
    void showEvent(QShowEvent* event) override;

 private:
    struct Row {
        QString name;
        std::vector<LayerButton*> buttons;  ///< one for each state
    };

    void addRow(Row row);
    void addOthers();

    ControlContext context_;
    std::vector<Row> rows_;
};

}  // namespace trimora::controls
