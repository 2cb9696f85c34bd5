#include "Monkey.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QThread>
#include <QUrl>
#include <QWheelEvent>
#include <numeric>
#include <utility>

#include "app/MenuTable.h"

namespace trimora::reliability {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kActsTold = 40;
constexpr int kNestedLoopPause = 5;  // milliseconds

Homes homesIn(const fs::path& folder) {
    return {folder / "data", folder / "config", folder / "cache"};
}

QUrl urlOf(const fs::path& file) {
    return QUrl::fromLocalFile(QString::fromStdString(file.string()));
}

/// All keys of the menus, and those that views, fields and sheets listen to.
const std::vector<QKeyCombination>& keysOfTheProgram() {
    static const std::vector<QKeyCombination> keys = [] {
        std::vector<QKeyCombination> all;
        for (const app::MenuRow& row : app::menuRows()) {
            for (const QKeySequence& sequence : app::keysOf(row))
                all.push_back(sequence[0]);
        }
        for (const Qt::Key plain :
             {Qt::Key_Return,   Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Space,
              Qt::Key_Left,     Qt::Key_Right,  Qt::Key_Up,  Qt::Key_Down,    Qt::Key_PageUp,
              Qt::Key_PageDown, Qt::Key_Home,   Qt::Key_End, Qt::Key_Delete,  Qt::Key_Backspace,
              Qt::Key_F10,      Qt::Key_Menu,   Qt::Key_7,   Qt::Key_Period,  Qt::Key_Percent,
              Qt::Key_Z,        Qt::Key_unknown})
            all.emplace_back(plain);
        return all;
    }();
    return keys;
}

QString textOf(int code) {
    return code >= Qt::Key_Space && code <= Qt::Key_AsciiTilde ? QString(QChar(code)).toLower() : QString();
}

Qt::KeyboardModifier modifierOf(int code) {
    switch (code) {
        case Qt::Key_Alt:
            return Qt::AltModifier;
        case Qt::Key_Control:
            return Qt::ControlModifier;
        case Qt::Key_Shift:
            return Qt::ShiftModifier;
        default:
            return Qt::NoModifier;
    }
}

/// The nearest widget around the place that takes drops.
QWidget* takerOfDropsAt(QPoint place) {
    QWidget* widget = QApplication::widgetAt(place);
    while (widget != nullptr && !widget->acceptDrops())
        widget = widget->parentWidget();
    return widget;
}

template <typename Event>
bool send(QWidget& onto, QPointF place, const QMimeData& data) {
    using Place = std::conditional_t<std::is_same_v<Event, QDropEvent>, QPointF, QPoint>;
    Event event(
        [&] {
            if constexpr (std::is_same_v<Place, QPoint>)
                return place.toPoint();
            else
                return place;
        }(),
        Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&onto, &event);
    return event.isAccepted();
}

}  // namespace

const std::vector<Monkey::Kind>& Monkey::kinds() {
    static const std::vector<Kind> all = {
        {"move", 300, &Monkey::movePointer},      {"press", 120, &Monkey::pressButton},
        {"release", 120, &Monkey::releaseButton}, {"click", 60, &Monkey::click},
        {"wheel", 40, &Monkey::turnWheel},        {"key", 70, &Monkey::typeKey},
        {"hold", 15, &Monkey::holdKey},           {"let go", 20, &Monkey::letKeyGo},
        {"burst", 8, &Monkey::burstOfShortcuts},  {"drag over", 15, &Monkey::dragSomethingOver},
        {"resize", 6, &Monkey::resizeWindow},     {"state", 6, &Monkey::changeWindowState},
        {"focus", 10, &Monkey::moveFocus},        {"offer", 12, &Monkey::offerFiles},
        {"outside", 8, &Monkey::callFromOutside}, {"menu", 15, &Monkey::triggerMenuItem},
        {"time", 25, &Monkey::letTimePass},       {"start again", 1, &Monkey::startAgain},
    };
    return all;
}

Monkey::Monkey(const fs::path& folder, std::uint64_t seed)
    : folder_(folder),
      random_(seed),
      pool_(folder / "pool"),
      panels_(
          [this] { return anyFile(); },
          [this] {
              const std::vector<const char*> targets = {"a.png", "b.png", "missing/c.png", ".", "/dev/full"};
              return folder_ / "saved" / oneOf(targets);
          }) {
    fs::create_directories(folder_ / "saved");
    QObject::connect(&nestedLoops_, &QTimer::timeout, [this] { leaveNestedLoop(); });
    nestedLoops_.start(kNestedLoopPause);
    start();
}

Monkey::~Monkey() {
    letGo();
}

void Monkey::start() {
    ++counts_.starts;
    program_ = std::make_unique<WindowProgram>(homesIn(folder_), panels_);
}

void Monkey::startAgain() {
    letGo();
    program_.reset();
    start();
}

void Monkey::act() {
    static const int sum = std::accumulate(kinds().begin(), kinds().end(), 0,
                                           [](int before, const Kind& kind) { return before + kind.weight; });
    int left = number(1, sum);
    for (const Kind& kind : kinds()) {
        left -= kind.weight;
        if (left > 0)
            continue;
        acts_.emplace_back(kind.name);
        if (acts_.size() > kActsTold)
            acts_.erase(acts_.begin());
        (this->*kind.act)();
        break;
    }
    if (chance(40))
        program_->time().turn();
    if (program_->hasQuit())
        startAgain();
}

std::string Monkey::lastActs() const {
    return std::accumulate(
        acts_.begin(), acts_.end(), std::string(),
        [](std::string all, const std::string& act) { return std::move(all) + act + ", "; });
}

int Monkey::number(int from, int to) {
    return std::uniform_int_distribution<int>(from, to)(random_);
}

// ── Mouse ──────────────────────────────────────────────────────────────────────────────────────

QWidget* Monkey::front() {
    if (QWidget* const popup = QApplication::activePopupWidget())
        return popup;
    if (QWidget* const modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* const active = QApplication::activeWindow())
        return active;
    return &program_->window();
}

QPointF Monkey::somewhere() {
    QWidget& window = *front();
    if (chance(50))
        return window.mapToGlobal(
            QPointF(number(-20, window.width() + 20), number(-20, window.height() + 20)));
    std::vector<QWidget*> shown;
    for (QWidget* const child : window.findChildren<QWidget*>()) {
        if (child->isVisible())
            shown.push_back(child);
    }
    return shown.empty() ? pointer_ : oneOf(shown)->mapToGlobal(QPointF(oneOf(shown)->rect().center()));
}

void Monkey::mouse(QEvent::Type type, Qt::MouseButton button) {
    timestamp_ += number(1, 500);
    if (type == QEvent::MouseButtonPress)
        buttons_ |= button;
    else if (type == QEvent::MouseButtonRelease)
        buttons_ &= ~button;
    QWindow* window = pressedIn_;
    if (window == nullptr)
        window = QGuiApplication::topLevelAt(pointer_.toPoint());
    if (window == nullptr)
        return;
    pressedIn_ = buttons_ != Qt::NoButton ? window : nullptr;
    qt_handleMouseEvent(window, window->mapFromGlobal(pointer_), pointer_, buttons_, button, type, modifiers_,
                        timestamp_);
}

void Monkey::movePointer() {
    constexpr int kNear = 40;
    pointer_ = chance(80) ? pointer_ + QPointF(number(-kNear, kNear), number(-kNear, kNear)) : somewhere();
    mouse(QEvent::MouseMove, Qt::NoButton);
}

void Monkey::pressButton() {
    static const std::vector<Qt::MouseButton> buttons = {Qt::LeftButton, Qt::LeftButton,  Qt::LeftButton,
                                                         Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    if (chance(30)) {
        pointer_ = somewhere();
        mouse(QEvent::MouseMove, Qt::NoButton);
    }
    mouse(QEvent::MouseButtonPress, oneOf(buttons));
}

void Monkey::releaseButton() {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        if (buttons_.testFlag(button))
            return mouse(QEvent::MouseButtonRelease, button);
    }
}

void Monkey::click() {
    pointer_ = somewhere();
    mouse(QEvent::MouseMove, Qt::NoButton);
    mouse(QEvent::MouseButtonPress, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton);
}

void Monkey::turnWheel() {
    constexpr int kNotch = 120;
    const QWidget& window = *front();
    QWidget* const under = QApplication::widgetAt(pointer_.toPoint());
    if (under == nullptr || under->window() != &window)
        return;
    const QPoint pixels = chance(30) ? QPoint(number(-40, 40), number(-40, 40)) : QPoint();
    QWheelEvent event(under->mapFromGlobal(pointer_), pointer_, pixels, QPoint(0, number(-3, 3) * kNotch),
                      buttons_, modifiers_, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(under, &event);
}

// ── Keys ───────────────────────────────────────────────────────────────────────────────────────

void Monkey::key(QEvent::Type type, int code, Qt::KeyboardModifiers modifiers) {
    QWindow* const window = QGuiApplication::focusWindow();
    if (window != nullptr)
        qt_handleKeyEvent(window, type, code, modifiers, textOf(code));
}

void Monkey::pressShortcut() {
    const QKeyCombination pressed = oneOf(keysOfTheProgram());
    const Qt::KeyboardModifiers modifiers = pressed.keyboardModifiers() | modifiers_;
    key(QEvent::KeyPress, pressed.key(), modifiers);
    key(QEvent::KeyRelease, pressed.key(), modifiers);
}

void Monkey::typeKey() {
    pressShortcut();
}

void Monkey::holdKey() {
    static const std::vector<int> held = {Qt::Key_Space, Qt::Key_Alt, Qt::Key_Control, Qt::Key_Shift};
    const int code = oneOf(held);
    modifiers_ |= modifierOf(code);
    heldKeys_.insert(code);
    key(QEvent::KeyPress, code, modifiers_);
}

void Monkey::letKeyGo() {
    if (heldKeys_.empty())
        return;
    const int code = *heldKeys_.begin();
    heldKeys_.erase(code);
    modifiers_ &= ~Qt::KeyboardModifiers(modifierOf(code));
    key(QEvent::KeyRelease, code, modifiers_);
}

void Monkey::burstOfShortcuts() {
    const int count = number(2, 8);
    for (int i = 0; i < count; ++i)
        pressShortcut();
}

// ── Files ──────────────────────────────────────────────────────────────────────────────────────

fs::path Monkey::anyFile() {
    return chance(60) ? oneOf(pool_.sound()) : oneOf(pool_.bad());
}

void Monkey::fill(QMimeData& data) {
    switch (number(0, 8)) {
        case 0:
            data.setUrls({urlOf(oneOf(pool_.sound()))});
            break;
        case 1:
            data.setUrls({urlOf(oneOf(pool_.bad()))});
            break;
        case 2:
            data.setUrls(
                {urlOf(anyFile()), QUrl(QStringLiteral("https://localhost/a.png")), urlOf(anyFile())});
            break;
        case 3:
            data.setUrls({QUrl(QStringLiteral("https://localhost/a.png")), QUrl()});
            break;
        case 4:
            data.setText(QStringLiteral("just words"));
            break;
        case 5:
            data.setData(QStringLiteral("image/png"), "no picture");
            break;
        case 6:
            data.setImageData(QImage(number(0, 40), number(0, 40), QImage::Format_ARGB32_Premultiplied));
            break;
        case 7:
            data.setData(QStringLiteral("text/uri-list"), "file://%%%\r\n\0\xff\r\nnonsense");
            break;
        default:
            break;  // nothing at all
    }
}

/// As the desktop does: a place that a sheet covers takes nothing, and what was not taken in is not dropped.
void Monkey::dragSomethingOver() {
    ++counts_.drops;
    QWidget* const taker = takerOfDropsAt(pointer_.toPoint());
    if (taker == nullptr || QApplication::activeModalWidget() != nullptr || buttons_ != Qt::NoButton)
        return;
    QMimeData data;
    fill(data);
    QPointF place = taker->mapFromGlobal(pointer_);
    bool taken = send<QDragEnterEvent>(*taker, place, data);
    for (int moves = number(0, 3); taken && moves > 0; --moves) {
        place += QPointF(number(-9, 9), number(-9, 9));
        taken = send<QDragMoveEvent>(*taker, place, data);
    }
    if (taken && chance(70)) {
        send<QDropEvent>(*taker, place, data);
        return;
    }
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(taker, &leave);
}

void Monkey::offerFiles() {
    ++counts_.offers;
    std::vector<fs::path> files;
    for (int count = number(0, 3); count >= 0; --count)
        files.push_back(anyFile());
    program_->editor().openFiles(files, chance(20));
}

// ── The window, and what others ask for ────────────────────────────────────────────────────────

void Monkey::resizeWindow() {
    program_->window().resize(number(200, 1500), number(150, 1100));
}

void Monkey::changeWindowState() {
    app::MainWindow& window = program_->window();
    switch (number(0, 4)) {
        case 0:
            window.close();
            break;
        case 1:
            window.showMinimized();
            break;
        case 2:
            window.toggleFullScreen();
            break;
        default:
            window.orderFront();
            break;
    }
}

void Monkey::moveFocus() {
    std::vector<QWidget*> shown;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            shown.push_back(window);
    }
    if (!shown.empty())
        oneOf(shown)->activateWindow();
}

/// The desktop's launcher and tray, and the end of its session.
void Monkey::callFromOutside() {
    app::AppDelegate& application = program_->wiring().shell().appDelegate();
    switch (number(0, 3)) {
        case 0:
            application.new_pressed();
            break;
        case 1:
            application.showWindowAction();
            break;
        case 2:
            (void)application.applicationShouldHandleReopen_hasVisibleWindows(chance(50));
            break;
        default:
            application.terminate();
            break;
    }
}

void Monkey::triggerMenuItem() {
    if (QApplication::activeModalWidget() != nullptr)
        return;
    std::vector<QAction*> enabled;
    for (QAction* const action : program_->window().findChildren<QAction*>()) {
        if (action->isEnabled() && action->menu() == nullptr)
            enabled.push_back(action);
    }
    if (!enabled.empty())
        oneOf(enabled)->trigger();
}

void Monkey::letTimePass() {
    constexpr double kMilliseconds = 1000;
    program_->time().advance(number(1, 2000) / kMilliseconds);
}

// ── Back to order ──────────────────────────────────────────────────────────────────────────────

/// A drag that leaves the window runs a loop of the toolkit's until it ends somewhere.
void Monkey::leaveNestedLoop() {
    if (QThread::currentThread()->loopLevel() == 0)
        return;
    ++counts_.nestedLoops;
    pointer_ += QPointF(50, 50);
    mouse(QEvent::MouseMove, Qt::NoButton);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton);
    key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
}

void Monkey::letGo() {
    while (buttons_ != Qt::NoButton)
        releaseButton();
    while (!heldKeys_.empty())
        letKeyGo();
    pressedIn_ = nullptr;
}

void Monkey::closeSheets() {
    constexpr int kMost = 100;
    for (int i = 0; i < kMost; ++i) {
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const open = popup != nullptr ? popup : QApplication::activeModalWidget();
        if (open == nullptr)
            return;
        if (auto* const dialog = qobject_cast<QDialog*>(open))
            dialog->reject();
        else
            open->close();
        program_->time().turn();
    }
}

void Monkey::rest() {
    letGo();
    closeSheets();
    if (program_->hasQuit())
        startAgain();
    program_->wiring().shell().appDelegate().showWindowAction();
    program_->rest();
    closeSheets();
    program_->rest();
}

}  // namespace trimora::reliability
