#include "platform/ActivationToken.h"

#include <QByteArray>

namespace trimora::platform::activation_token {
namespace {

constexpr const char* kToken = "XDG_ACTIVATION_TOKEN";
constexpr const char* kTokenOfX11 = "DESKTOP_STARTUP_ID";

}  // namespace

std::string ofThisStart() {
    const QByteArray token = qgetenv(kToken);
    return (token.isEmpty() ? qgetenv(kTokenOfX11) : token).toStdString();
}

void keep(const std::string& token) {
    if (!token.empty())
        qputenv(kToken, QByteArray::fromStdString(token));
}

std::string take() {
    std::string token = qgetenv(kToken).toStdString();
    qunsetenv(kToken);
    return token;
}

}  // namespace trimora::platform::activation_token
