#include "WindowProgram.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "app/MessageLine.h"

namespace trimora::reliability {

using std::filesystem::path;

namespace {

void openPanel(const QString& title, const path& file, ports::Panels::Answer answer) {
    auto* const dialog = new QDialog(platform::QtPanels::windowToAskIn());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(title);
    auto* const column = new QVBoxLayout(dialog);
    for (const auto& [words, end] : {std::pair{"Take", &QDialog::accept}, {"Cancel", &QDialog::reject}}) {
        auto* const button = new QPushButton(QString::fromLatin1(words), dialog);
        column->addWidget(button);
        QObject::connect(button, &QPushButton::clicked, dialog, end);
    }
    QObject::connect(dialog, &QDialog::finished, dialog, [file, answer = std::move(answer)](int button) {
        answer(button == QDialog::Accepted ? std::optional(file) : std::nullopt);
    });
    dialog->open();
}

Host with(foundation::QueueFactory& queues, Host host) {
    return {.queues = queues,
            .clock = host.clock,
            .scheduler = host.scheduler,
            .codecWorkers = host.codecWorkers,
            .panels = host.panels,
            .settings = host.settings,
            .userNotifications = host.userNotifications,
            .workspace = host.workspace,
            .homes = std::move(host.homes),
            .recording = host.recording,
            .earlierYes = host.earlierYes,
            .randomMicroseconds = std::move(host.randomMicroseconds),
            .quit = std::move(host.quit)};
}

}  // namespace

void OneFilePanels::chooseFileToOpen(const path& /*folder*/, FilesAnswer answer) {
    openPanel(QStringLiteral("Open picture"), toOpen_(),
              [answer = std::move(answer)](const std::optional<path>& file) {
                  answer(file ? std::vector{*file} : std::vector<path>());
              });
}

void OneFilePanels::chooseFileToSave(const path& /*folder*/, const std::string& /*name*/, Answer answer) {
    openPanel(QStringLiteral("Save picture"), toSave_(), std::move(answer));
}

void OneFilePanels::runAlert(const ports::Alert& alert, AlertAnswer answer) {
    real_.runAlert(alert, std::move(answer));
}

WindowProgram::WindowProgram(Homes homes, ports::Panels& panels)
    : wiring_(std::make_unique<Wiring>(with(queues_, desktop_.host(std::move(homes), panels)))) {
    using Kind = app::MessageLine::Kind;
    wiring_->shell().messages().onLine([this](Kind kind, const std::string& line) {
        if (kind == Kind::trouble)
            troubles_.push_back(line);
    });
    wiring_->show();
    wiring_->shell().appDelegate().applicationDidFinishLaunching();
    time().turn();
}

WindowProgram::~WindowProgram() {
    time().turn();
    // What was asked while the window was hidden hangs from none; the end of a process takes it along.
    const QWidgetList all = QApplication::topLevelWidgets();
    const std::vector<QPointer<QWidget>> windows(all.begin(), all.end());  // one may take others along
    for (const QPointer<QWidget>& window : windows) {
        if (qobject_cast<QDialog*>(window) != nullptr && window->parentWidget() == nullptr)
            delete window.data();
    }
}

void WindowProgram::rest() {
    constexpr double kRest = 1;  // seconds; more than any motion takes
    constexpr int kRests = 3;    // a motion may begin the next
    for (int i = 0; i < kRests; ++i)
        time().advance(kRest);
}

}  // namespace trimora::reliability
