#include "cli/Toolkit.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "controls/AppStyle.h"
#include "controls/IconsAhead.h"
#include "controls/Metrics.h"
#include "platform/ApplicationId.h"
#include "platform/SheetKeyboard.h"

namespace trimora {
namespace {

// What the offscreen platform says of itself.
constexpr QLatin1String kOwnWords[] = {
    QLatin1String("This plugin does not support"),
    QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"),
};

void tellWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    const bool ownWords = std::any_of(std::begin(kOwnWords), std::end(kOwnWords),
                                      [&](auto words) { return text.startsWith(words); });
    if (type != QtDebugMsg && type != QtInfoMsg && !ownWords)
        std::fprintf(stderr, "trimora: %s\n", qUtf8Printable(text));
}

}  // namespace

Toolkit::Settings::Settings(Screen screen) {
    if (screen == Screen::offscreen) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(tellWarnings);
    }
    // Scale factors are taken as the screen has them.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setApplicationName(QStringLiteral("Trimora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TRIMORA_VERSION));
    QGuiApplication::setDesktopFileName(QLatin1String(platform::kApplicationId));
}

Toolkit::Toolkit(Screen screen) : settings_(screen), application_(argumentCount_, arguments_) {
    fonts_.wait();
    // Every sample of a stroke counts. Not sooner: the X11 platform sets this when it starts.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    controls::applyAppStyle();
    platform::keepKeyboardWithSheets(application_);
    ahead_ = std::jthread([font = QApplication::font(), scale = application_.devicePixelRatio()] {
        platform::findFontsFor(font);
        controls::drawIconsAhead({{"open", controls::metrics::kBarIcon},
                                  {"save", controls::metrics::kBarIcon},
                                  {"picture_drop", controls::metrics::kDropImage},
                                  {"arrow_down", controls::metrics::kHintArrow}},
                                 scale);
    });
}

}  // namespace trimora
