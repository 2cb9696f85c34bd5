#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <iterator>
#include <memory>

/// Compiled into every test program of a floor that needs Qt: one QApplication for all its tests, and
/// a failure wherever the toolkit warns.
namespace trimora::util {
namespace {

// What the offscreen platform says of itself and of the account that it runs under.
constexpr QLatin1String kOwnWords[] = {
    QLatin1String("This plugin does not support propagateSizeHints"),
    QLatin1String("This plugin does not support raise()"),
    QLatin1String("This plugin does not support grabbing the keyboard"),
    QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"),
};

void failAtWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    const bool ownWords = std::any_of(std::begin(kOwnWords), std::end(kOwnWords),
                                      [&](auto words) { return text.startsWith(words); });
    if (type != QtDebugMsg && type != QtInfoMsg && !ownWords)
        ADD_FAILURE() << "the toolkit says: " << text.toStdString();
}

class QtTestEnvironment final : public ::testing::Environment {
 public:
    void SetUp() override {
        qInstallMessageHandler(failAtWarnings);
        QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
            Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
        application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
    }
    void TearDown() override {
        application_.reset();
        qInstallMessageHandler(nullptr);
    }

 private:
    int argumentCount_ = 1;
    char name_[8] = "trimora";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* const kRegistered = ::testing::AddGlobalTestEnvironment(new QtTestEnvironment);

}  // namespace
}  // namespace trimora::util
