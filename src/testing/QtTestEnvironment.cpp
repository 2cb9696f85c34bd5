#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

/// Compiled into every test program of a floor that needs Qt: one QApplication for all its tests, and
/// a failure wherever the toolkit warns.
namespace trimora::testing {
namespace {

void failAtWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg && type != QtInfoMsg)
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

[[maybe_unused]] const auto* const registered = ::testing::AddGlobalTestEnvironment(new QtTestEnvironment);

}  // namespace
}  // namespace trimora::testing
