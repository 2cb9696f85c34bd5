#include "app/EditorWindow.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QFile>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QMessageBox>
#include <QVBoxLayout>
#include <utility>

#include "app/StatusLine.h"
#include "app/WindowPanels.h"
#include "controls/Icons.h"
#include "controls/Metrics.h"
#include "controls/SizeControl.h"
#include "editor/DropTarget.h"
#include "editor/EmptyHint.h"

namespace trimora::app {

namespace metrics = controls::metrics;

using cutengine::Colour;
using cutengine::DragMode;
using cutengine::RKImageCutView;
using std::filesystem::path;

namespace {

// Scroll deltas that make the picture a quarter larger, and undo just that.
constexpr double kZoomInStep = 12.5;
constexpr double kZoomOutStep = -10;
constexpr int kBrushStep = 5;

QColor toolkitColour(const Colour& colour) {
    return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                            static_cast<float>(colour.blue), static_cast<float>(colour.alpha));
}

Colour engineColour(const QColor& colour) {
    return {colour.redF(), colour.greenF(), colour.blueF(), colour.alphaF()};
}

}  // namespace

EditorWindow::EditorWindow(const Services& services)
    : commands_(*this, [this](Command command) { run(command); }),
      size_(new controls::SizeControl(QStringLiteral("Brush size"),
                                      static_cast<int>(RKImageCutView::kSmallestBrush),
                                      static_cast<int>(RKImageCutView::kLargestBrush))),
      status_(new StatusLine),
      cutView_(std::make_unique<editor::CutViewWidget>(services.cutView)),
      hint_(new editor::EmptyHint(cutView_.get())),
      openFlow_({services.cutView.queues, services.decoder, services.panels, *status_},
                [this](auto picture, const path& file) { showPicture(std::move(picture), file); }),
      saveFlow_(
          {services.cutView.queues, services.cutView.clock, services.encoder, services.panels, *status_},
          cutView_->view()) {
    setWindowTitle(QStringLiteral("Trimora"));
    setWindowIcon(controls::icon(QStringLiteral("trimora")));
    setContextMenuPolicy(Qt::NoContextMenu);
    resize(metrics::kWindowWidth, metrics::kWindowHeight);
    setMinimumSize(metrics::kSmallestWidth, metrics::kSmallestHeight);
    buildLayout();
    connectCutView();
    commands_.check(Command::brushTool);
    commands_.check(Command::transparentBackground);
    setColour(colour_);
    updateEnabled();
    cutView_->setFocus();
}

EditorWindow::~EditorWindow() {
    view().setDelegate(nullptr);
}

void EditorWindow::buildLayout() {
    commands_.fillMenus(*menuBar());
    auto* const middle = new QHBoxLayout;
    middle->setSpacing(0);
    middle->addWidget(makeToolStrip(commands_, size_));
    middle->addWidget(cutView_.get(), 1);
    middle->addWidget(makeRightPanel(commands_));

    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeToolbar(commands_));
    column->addLayout(middle, 1);
    column->addWidget(status_);
    setCentralWidget(content);
}

void EditorWindow::connectCutView() {
    view().setDelegate(this);
    cutView_->onOpenRequest([this] { run(Command::openPicture); });
    cutView_->onHistoryTrouble(
        [this](const std::string& reason) { status_->trouble("Undo cannot be kept: " + reason); });
    cutView_->onBrushSwap([this] {
        const bool restores = view().brushAlphaValue() > 0.5F;
        commands_.check(restores ? Command::restoreTool : Command::brushTool);
    });
    size_->showValue(static_cast<int>(view().brushDiameter()));
    size_->onChange([this](int diameter) {
        view().setBrushDiameterSilent(static_cast<float>(diameter));
        view().updateCursor();
    });
    new editor::DropTarget(
        *this, [this](std::vector<path> files) { open(std::move(files)); },
        [this](bool over) { hint_->setHighlighted(over); });
}

// ── Commands ───────────────────────────────────────────────────────────────────────────────────

void EditorWindow::run(Command command) {
    switch (command) {
        case Command::openPicture:
            return openFlow_.openPicture();
        case Command::savePicture:
            return saveFlow_.savePicture(pictureFolder_);
        case Command::quit:
            return QCoreApplication::quit();
        case Command::undo:
            return view().prevHistoryState();
        case Command::redo:
            return view().nextHistoryState();
        case Command::restoreImage:
            return view().resetMask();
        case Command::zoomIn:
            return zoom(kZoomInStep);
        case Command::zoomOut:
            return zoom(kZoomOutStep);
        case Command::zoomToFit:
            return zoomToFit();
        case Command::fullScreen:
            return setWindowState(
                windowState().setFlag(Qt::WindowFullScreen, commands_.isChecked(Command::fullScreen)));
        case Command::handTool:
        case Command::brushTool:
        case Command::restoreTool:
            return chooseTool(command);
        case Command::swapBrushes:
            return chooseTool(commands_.isChecked(Command::restoreTool) ? Command::brushTool
                                                                        : Command::restoreTool);
        case Command::smallerBrush:
            return changeBrush(-kBrushStep);
        case Command::largerBrush:
            return changeBrush(kBrushStep);
        case Command::transparentBackground:
        case Command::colourBackground:
        case Command::blurBackground:
            return showBackground();
        case Command::chooseColour:
            return chooseColour();
        case Command::keyboardShortcuts:
            return showShortcuts();
        case Command::about:
            return showAbout();
    }
}

void EditorWindow::chooseTool(Command tool) {
    commands_.check(tool);
    if (tool != Command::handTool)
        view().setBrushAlphaValue(tool == Command::restoreTool ? 1 : 0);
    cutView_->setToolDragMode(tool == Command::handTool ? DragMode::pan : DragMode::paint);
}

void EditorWindow::changeBrush(int by) {
    view().setBrushDiameter(view().brushDiameter() + static_cast<float>(by));
}

void EditorWindow::showBackground() {
    const bool blurred = commands_.isChecked(Command::blurBackground);
    const bool transparent = commands_.isChecked(Command::transparentBackground);
    view().setColorMode(false);
    view().setBlurMode(blurred);
    if (!blurred)
        view().setBrushColor(colour_);
    view().setBlurOn(blurred);
    view().setColorOn(transparent);
}

void EditorWindow::setColour(const Colour& colour) {
    colour_ = colour;
    commands_.action(Command::chooseColour).setIcon(controls::swatchIcon(toolkitColour(colour)));
    showBackground();
}

void EditorWindow::chooseColour() {
    auto* const dialog = new QColorDialog(toolkitColour(colour_), this);
    dialog->setWindowTitle(QStringLiteral("Background colour"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    commands_.check(Command::colourBackground);
    showBackground();
    connect(dialog, &QColorDialog::currentColorChanged, this,
            [this](const QColor& colour) { setColour(engineColour(colour)); });
    connect(dialog, &QDialog::rejected, this, [this, before = colour_] { setColour(before); });
    dialog->open();
}

void EditorWindow::zoom(double deltaY) {
    if (view().image() == nullptr)
        return;
    view().setImageFit(false);
    view().scaleImg({cutView_->width() / 2.0, cutView_->height() / 2.0}, deltaY);
}

void EditorWindow::zoomToFit() {
    view().setImageFit(true);
    view().correctImagePositionWithFiting(true);
}

// ── Picture and history ────────────────────────────────────────────────────────────────────────

void EditorWindow::showPicture(cutengine::PicturePtr picture, const path& file) {
    hint_->hide();
    drawn_ = false;
    pictureFolder_ = file.parent_path();
    status_->setNumbers(
        QStringLiteral("%1 × %2 pixels").arg(picture->pixelWidth()).arg(picture->pixelHeight()));
    setWindowTitle(QStringLiteral("%1 – Trimora").arg(QFile::decodeName(file.filename().c_str())));
    view().setImage(std::move(picture));
    showBackground();
    updateEnabled();
}

void EditorWindow::updateEnabled() {
    const bool loaded = view().image() != nullptr;
    commands_.setEnabled(Command::savePicture, loaded && drawn_);
    commands_.setEnabled(Command::undo, loaded && view().historyCurrentState() > 0);
    commands_.setEnabled(Command::redo, view().historyCurrentState() < view().historyLength() - 1);
    commands_.setEnabled(Command::restoreImage, view().historyLength() >= 2);
    for (const Command command : {Command::zoomIn, Command::zoomOut, Command::zoomToFit})
        commands_.setEnabled(command, loaded);
}

void EditorWindow::cutViewWillStartDraw(RKImageCutView* /*view*/) {
    drawn_ = true;
    updateEnabled();
}

void EditorWindow::cutViewDidEndDraw(RKImageCutView* /*view*/) {}

void EditorWindow::cutViewDidChangeHistoryState(RKImageCutView* /*view*/) {
    updateEnabled();
}

void EditorWindow::cutView_didChangeBrushDiameter(RKImageCutView* view, float /*diameter*/) {
    size_->showValue(static_cast<int>(view->brushDiameter()));
}

void EditorWindow::RectBorderForMiniMap(RKImageCutView* /*view*/, float /*SootnX*/, float /*SootnY*/,
                                        float /*SizeW*/, float /*SizeH*/) {}

// ── Help ───────────────────────────────────────────────────────────────────────────────────────

void EditorWindow::showShortcuts() {
    auto* const box = new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Keyboard shortcuts"),
                                      Commands::shortcutTable(), QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void EditorWindow::showAbout() {
    auto* const box = new QMessageBox(
        QMessageBox::NoIcon, QStringLiteral("About Trimora"),
        QStringLiteral(
            "<b>Trimora %1</b><br>Cuts a subject out of a picture, and puts nothing, a colour or a "
            "blur behind it.")
            .arg(QCoreApplication::applicationVersion()),
        QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(windowIcon().pixmap(metrics::kDropImage));
    box->open();
}

}  // namespace trimora::app
