#include "editor/EditorView.h"

#include <QMouseEvent>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/ButtonOpenAppereance.h"
#include "controls/CustomViewWithButton.h"
#include "controls/Icons.h"
#include "controls/LayerButton.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "editor/CursorPreview.h"
#include "editor/CutViewWidget.h"
#include "editor/DragView.h"
#include "editor/EditorPanels.h"
#include "editor/HintArrow.h"
#include "editor/MiniMap.h"
#include "util/ActionBlock.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
namespace palette = controls::palette;

namespace {

int rounded(double points) {
    return static_cast<int>(std::lround(points));
}

/// In the middle of `area`, in the size that it asks for.
void centre(QWidget& view, const QRect& area) {
    QRect place({}, view.sizeHint());
    place.moveCenter(area.center());
    view.setGeometry(place);
}

}  // namespace

EditorView::EditorView(const Services& services)
    : services_(services),
      constraints_{
          .constrLeftPanelLeading = {0, services_.control, [this] { layOut(); }},
          .constrLeftPanelLeading2 = {0, services_.control, [this] { layOut(); }},
          .constrRightPanelTrailing2 = {0, services_.control, [this] { layOut(); }},
          .constrRightPanelWithMode = {-metrics::kRightPanelWidth, services_.control, [this] { layOut(); }},
          .constrBtnSaveBottom = {0, services_.control, [this] { layOut(); }},
          .widthMainViewConstraint = {metrics::kEmptyWidth, services_.control, [this] { layOut(); }},
          .heightMainViewConstraint = {metrics::kEmptyHeight, services_.control, [this] { layOut(); }},
      } {
    util::layerBackground(*this, palette::kWindow);
    makeEmptyScreen();
    outlets_.viDrug->installEventFilter(this);
    layOut();
}

EditorView::~EditorView() = default;

EditorOutlets& EditorView::outlets() {
    if (!isWhole_)
        makeRest();
    return outlets_;
}

void EditorView::makeRest() {
    const controls::ControlContext& control = services_.control;
    // Memory may have been missing in the middle of it, and whoever asks now tries again.
    for (QWidget* const panel : {std::exchange(outlets_.toolStrip, nullptr), std::exchange(stage_, nullptr),
                                 std::exchange(outlets_.rightPanelWithMode, nullptr)})
        delete panel;
    // In the order in which Tab goes through them.
    makeToolStrip(outlets_, control, this);
    stage_ = new QWidget(this);
    outlets_.viCut = new CutViewWidget(services_.cutView, stage_);
    outlets_.viCut->setObjectName(QStringLiteral("viCut"));
    makeQuickPanels(outlets_, control, stage_);
    makeFloatingPanel(outlets_, control, stage_);
    outlets_.ViewForCursor = new CursorPreview(stage_);
    outlets_.ViewForCursor->setObjectName(QStringLiteral("ViewForCursor"));
    makeRightPanel(outlets_, {control, services_.queues, services_.caches}, this);

    // The cut view tells of no fit: what it leads to is read when it is over.
    outlets_.viCut->onPlacementEvent([this] {
        services_.control.mainQueue.async([self = QPointer(this)] {
            if (self && self->placementChanged_)
                self->placementChanged_();
        });
    });
    outlets_.viDrug->alsoTakeDropsOn(*outlets_.viCut);
    setTabOrder(outlets_.btnSave, outlets_.openPictureButton);  // which was made first
    stage_->show();
    showEmptyScreen(true);
    layOutRest();
    isWhole_ = true;
}

void EditorView::makeEmptyScreen() {
    auto* const area = new DragView(services_.queues, services_.caches, this);
    area->setObjectName(QStringLiteral("viDrug"));
    area->setImage(controls::icon(QStringLiteral("picture_drop")),
                   QSizeF(metrics::kDropImage, metrics::kDropImage));
    area->setStrTitle(tr("Drop a picture here or open one"));
    area->setStrDescription(tr("PNG, JPEG, TIFF or GIF"));
    util::layerBackground(*area, palette::kWindow);
    outlets_.viDrug = area;

    outlets_.ivArrow = new HintArrow(services_.control, area);
    outlets_.ivArrow->setObjectName(QStringLiteral("ivArrow"));
    auto* const open = new controls::ButtonOpenAppereance(services_.control, area);
    open->setObjectName(QStringLiteral("openPictureButton"));
    open->setText(tr("Open picture"));
    open->setAccessibleName(open->text());
    open->setToolTip(tr("Open a picture (%1)").arg(QStringLiteral("Ctrl+O")));
    outlets_.openPictureButton = open;
}

void EditorView::showEmptyScreen(bool empty) {
    outlets_.viDrug->setVisible(empty);
    outlets_.viDrug->raise();
    outlets_.toolStrip->setVisible(!empty);
    outlets_.rightPanelWithMode->setVisible(!empty);
    outlets_.viLeftPanelVariant2->setEnabled(!empty);
    outlets_.viRightPanelVariant2->setEnabled(!empty);
    outlets_.viewWithButton->setEnabled(!empty);
}

void EditorView::letShrink() {
    shrinks_ = true;
    setMinimumSize(0, 0);
}

// ── Layout ─────────────────────────────────────────────────────────────────────────────────────

void EditorView::layOut() {
    if (!shrinks_)
        setMinimumSize(rounded(constraints_.widthMainViewConstraint.constant()),
                       rounded(constraints_.heightMainViewConstraint.constant()));
    if (isWhole_)
        layOutRest();
}

void EditorView::layOutRest() {
    const int left = metrics::kToolPanelWidth;
    const int right = metrics::kRightPanelWidth;
    outlets_.toolStrip->setGeometry(0, 0, left, height());
    stage_->setGeometry(left, 0, std::max(0, width() - left - right), height());
    const int slid = rounded(-constraints_.constrRightPanelWithMode.constant());
    outlets_.rightPanelWithMode->setGeometry(width() - right + slid, 0, right, height());
    layOutStage();

    const QRect room({}, QSize(right - 2 * metrics::kPanelMargin, metrics::kCallHeight));
    outlets_.btnSave->setGeometry(room.translated(0, rounded(-constraints_.constrBtnSaveBottom.constant())));
}

void EditorView::layOutStage() {
    const QRect area = stage_->rect();
    outlets_.viCut->setGeometry(area);
    centre(*outlets_.ViewForCursor, area);

    QWidget& first = *outlets_.viLeftPanelVariant1;
    first.setGeometry(rounded(constraints_.constrLeftPanelLeading.constant()), 0,
                      metrics::kQuickPanelVariant1, area.height());
    QWidget& left = *outlets_.viLeftPanelVariant2;
    centre(left, area);
    left.move(rounded(constraints_.constrLeftPanelLeading2.constant()), left.y());
    QWidget& right = *outlets_.viRightPanelVariant2;
    centre(right, area);
    right.move(area.width() - right.width() - rounded(constraints_.constrRightPanelTrailing2.constant()),
               right.y());
    // One that is all out of sight takes no part: the keyboard is not to go where nobody sees it.
    left.setVisible(left.x() > -left.width());
    right.setVisible(right.x() < area.width());
}

void EditorView::layOutEmptyScreen() {
    outlets_.viDrug->setGeometry(rect());
    const DragViewLayout places = outlets_.viDrug->currentLayout();
    const auto fromTop = [this](double y) { return rounded(height() - y); };

    QWidget& open = *outlets_.openPictureButton;
    open.resize(metrics::kOpenWidth, metrics::kOpenHeight);
    const int belowText = fromTop(places.description.y + places.description.height) + metrics::kOpenGap;
    open.move((width() - open.width()) / 2, belowText);

    QWidget& arrow = *outlets_.ivArrow;
    arrow.resize(arrow.sizeHint());
    const int aboveImage = fromTop(places.image.y + places.image.height) - metrics::kGap;
    arrow.move((width() - arrow.width()) / 2, aboveImage - arrow.height());
}

// ── Events ─────────────────────────────────────────────────────────────────────────────────────

void EditorView::showEvent(QShowEvent* event) {
    if (willAppear_)
        willAppear_();
    QWidget::showEvent(event);
}

void EditorView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
    layOutEmptyScreen();
}

bool EditorView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == outlets_.viDrug && event->type() == QEvent::MouseButtonPress && emptyPressed_ &&
        static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton)
        emptyPressed_();
    return QWidget::eventFilter(watched, event);
}

}  // namespace trimora::editor
