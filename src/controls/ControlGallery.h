#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "controls/ControlContext.h"
#include "controls/GalleryReports.h"
#include "controls/GalleryStates.h"

class QGridLayout;

namespace trimora::controls {

/// One screen with every control in every state it can be seen in, for whoever works on their looks: a
/// row a control, a column a state.
///
/// The states are put on when the gallery is first in front. The keyboard can be in one place only: what
/// a control looks like when it has it is shown by a portrait, taken at that moment with the keyboard
/// really there. All others are live, and say what they report.
class ControlGallery final : public QWidget {
 public:
    /// `report` is handed each report as a line (see GalleryReports). When all states are on, come lines
    /// "place: X Y WIDTH HEIGHT NAME" for the live controls, in points from the gallery's upper left
    /// corner, with lines "NAME / slider" for the slider alone of one with a field, and one line "ready".
    explicit ControlGallery(const ControlContext& context, GalleryReports::Sink report = {},
                            QWidget* parent = nullptr);
    ~ControlGallery() override;

    /// A control, or in place of one its portrait.
    struct Cell {
        std::string name;  ///< "KrugButton, held"
        QWidget* widget;
        const GalleryState* state;
    };
    [[nodiscard]] const std::vector<Cell>& cells() const { return cells_; }

 protected:
    bool event(QEvent* event) override;

 private:
    void addButtons();
    void addHalfDiscs();
    void addSliders();
    void addColors();
    void addScrollBars();
    void addBlockers();
    void addOthers();
    void addCaptions(const GalleryStates& states);
    void addTitle(const char* title);
    template <typename Make>
    void addRow(const char* title, const GalleryStates& states, Make make);
    template <typename Button>
    void addButtonRow(const char* title, const char* text, const char* image = nullptr);
    template <typename Control>
    void addCell(const std::string& name, const GalleryState& state, Control* control, int column);
    void inTwoTurns();
    void putStatesOn();
    void portray(Cell& cell);
    void tellPlace(const QWidget& widget, const std::string& name);
    void tellPlaces();

    ControlContext context_;
    GalleryReports reports_;
    std::vector<Cell> cells_;
    QGridLayout* grid_ = nullptr;  ///< the one that rows are added to
    int line_ = 0;                 ///< its next one
    bool ready_ = false;
};

}  // namespace trimora::controls
