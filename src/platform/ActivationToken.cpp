#include "platform/ActivationToken.h"

#include <QWidget>

namespace trimora::platform {

namespace {

constexpr const char* kToken = "XDG_ACTIVATION_TOKEN";
constexpr const char* kTokenOfX11 = "DESKTOP_STARTUP_ID";

}  // namespace

namespace activationToken {

std::string ofThisStart() {
    const QByteArray token = qgetenv(kToken);
    return (token.isEmpty() ? qgetenv(kTokenOfX11) : token).toStdString();
}

void keep(const std::string& token) {
    if (!token.empty())
        qputenv(kToken, QByteArray::fromStdString(token));
}

std::string take() {
    const std::string token = qgetenv(kToken).toStdString();
    qunsetenv(kToken);
    return token;
}

}  // namespace activationToken

void bringToFront(QWidget& window, const std::string& token) {
    activationToken::keep(token);
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace trimora::platform
