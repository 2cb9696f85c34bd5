#include "platform/DBusNotifications.h"

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <memory>
#include <utility>
#include <vector>

#include "platform/ActivationToken.h"
#include "platform/BusForTests.h"

namespace trimora::platform {
namespace {

using ports::NotificationActivation;
using ports::UserNotification;

const QString kServer = QStringLiteral("org.freedesktop.Notifications");
const QString kServerPath = QStringLiteral("/org/freedesktop/Notifications");
constexpr uint kId = 7;
const UserNotification kSaved{"Trimora", "Save complete", "file:///a%20<b>&c.png", "Open"};

class DBusNotificationsTest : public ::testing::Test {
 protected:
    void startServer(QStringList capabilities) {
        server_ = std::make_unique<ServiceForTests>(
            bus_.connect(), kServer, kServerPath, [capabilities](const QDBusMessage& call) {
                return call.createReply(call.member() == "Notify" ? QVariant(kId) : QVariant(capabilities));
            });
    }

    /// The arguments of the one Notify that posting leads to.
    QVariantList post(const UserNotification& notification) {
        notifications_.post(notification);
        pumpUntil([this] { return !server_->calls("Notify").empty(); });
        return server_->calls("Notify").empty() ? QVariantList() : server_->calls("Notify").front();
    }

    void SetUp() override {
        notifications_.onActivation([this](const UserNotification& notification, NotificationActivation how) {
            heard_.emplace_back(notification.informativeText, how);
        });
    }

    /// Returns when everything that the server said so far has been heard.
    void hearAll() {
        server_->emitSignal("ActionInvoked", {kId, "default"});
        const auto count = heard_.size();
        pumpUntil([&] { return heard_.size() > count; });
        heard_.pop_back();
    }

    BusForTests bus_;
    std::unique_ptr<ServiceForTests> server_;
    std::vector<UserNotification> fellBack_;
    std::vector<std::pair<std::string, NotificationActivation>> heard_;
    DBusNotifications notifications_{bus_.connect(), [this](const auto& n) { fellBack_.push_back(n); }};
};

TEST_F(DBusNotificationsTest, SaysEverythingAndOffersItsButton) {
    startServer({"actions", "body", "body-markup"});
    const QVariantList notify = post(kSaved);
    EXPECT_EQ(notify.at(0).toString(), "Trimora");
    EXPECT_EQ(notify.at(2).toString(), "org.trimora.Trimora");
    EXPECT_EQ(notify.at(3).toString(), "Trimora");
    EXPECT_EQ(notify.at(4).toString(), "Save complete\nfile:///a%20&lt;b&gt;&amp;c.png");
    EXPECT_EQ(notify.at(5).toStringList(), (QStringList{"default", "", "button", "Open"}));
    const auto hints = qdbus_cast<QVariantMap>(notify.at(6));
    EXPECT_EQ(hints.value("desktop-entry").toString(), "org.trimora.Trimora");
    EXPECT_TRUE(fellBack_.empty());
}

TEST_F(DBusNotificationsTest, AServerWithoutMarkupAndButtonsGetsPlainTextAndNoButton) {
    startServer({"body"});
    const QVariantList notify = post(kSaved);
    EXPECT_EQ(notify.at(4).toString(), "Save complete\nfile:///a%20<b>&c.png");
    EXPECT_TRUE(notify.at(5).toStringList().isEmpty());
}

TEST_F(DBusNotificationsTest, EmptyTextsLeaveNoEmptyLinesAndNoButton) {
    startServer({"actions", "body"});
    const QVariantList notify = post({"Trimora", "", "only this", ""});
    EXPECT_EQ(notify.at(4).toString(), "only this");
    EXPECT_EQ(notify.at(5).toStringList(), (QStringList{"default", ""}));
}

TEST_F(DBusNotificationsTest, TellsTheButtonFromAClickOnTheNotification) {
    startServer({"actions"});
    post(kSaved);
    hearAll();
    server_->emitSignal("ActionInvoked", {kId, "button"});
    server_->emitSignal("ActionInvoked", {kId, "default"});
    pumpUntil([this] { return heard_.size() == 2; });
    EXPECT_EQ(heard_.at(0), std::pair(kSaved.informativeText, NotificationActivation::actionButton));
    EXPECT_EQ(heard_.at(1), std::pair(kSaved.informativeText, NotificationActivation::contentsClicked));
}

TEST_F(DBusNotificationsTest, OthersNotificationsUnknownKeysAndClosedOnesAreNotHeard) {
    startServer({"actions"});
    post(kSaved);
    hearAll();
    server_->emitSignal("ActionInvoked", {kId + 1, "button"});
    server_->emitSignal("ActionInvoked", {kId, "inline-reply"});
    hearAll();
    EXPECT_TRUE(heard_.empty());

    server_->emitSignal("NotificationClosed", {kId, 2U});
    server_->emitSignal("ActionInvoked", {kId, "button"});
    post(kSaved);
    pumpUntil([this] { return server_->calls("Notify").size() == 2; });
    hearAll();
    EXPECT_TRUE(heard_.empty());
}

TEST_F(DBusNotificationsTest, NobodyElseOnTheBusCanAnswerForThePerson) {
    startServer({"actions"});
    post(kSaved);
    hearAll();
    QDBusConnection stranger = bus_.connect();
    QDBusMessage forged = QDBusMessage::createSignal(kServerPath, kServer, "ActionInvoked");
    forged << kId << "button";
    ASSERT_TRUE(stranger.send(forged));
    // Its next call is answered only after the bus has passed its signal on.
    (void)stranger.call(
        QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId"));
    hearAll();
    EXPECT_TRUE(heard_.empty());
}

TEST_F(DBusNotificationsTest, TheTokenOfAClickIsKeptForWhatIsShownNext) {
    startServer({"actions"});
    post(kSaved);
    hearAll();
    server_->emitSignal("ActivationToken", {kId, "token-1"});
    hearAll();
    EXPECT_EQ(activation_token::take(), "token-1");
    EXPECT_EQ(activation_token::take(), "");
}

TEST_F(DBusNotificationsTest, WithoutAServerTheFallbackShowsItAndItsAnswersCountToo) {
    notifications_.post(kSaved);
    EXPECT_TRUE(fellBack_.empty()) << "posting must not wait for the bus";
    pumpUntil([this] { return !fellBack_.empty(); });
    EXPECT_EQ(fellBack_.front().subtitle, "Save complete");
    notifications_.activated(fellBack_.front(), NotificationActivation::actionButton);
    EXPECT_EQ(heard_.size(), 1U);
}

TEST_F(DBusNotificationsTest, AServerThatRefusesLeavesItToTheFallback) {
    ServiceForTests refusing(bus_.connect(), kServer, kServerPath, [](const QDBusMessage& call) {
        return call.member() == "Notify" ? call.createErrorReply(QDBusError::LimitsExceeded, "too many")
                                         : call.createReply(QStringList{"actions"});
    });
    notifications_.post(kSaved);
    pumpUntil([this] { return !fellBack_.empty(); });
    EXPECT_EQ(refusing.calls("Notify").size(), 1U);
}

TEST(DBusNotifications, WithoutABusTheFallbackShowsIt) {
    std::vector<UserNotification> fellBack;
    DBusNotifications notifications(QDBusConnection("there is none"),
                                    [&](const auto& n) { fellBack.push_back(n); });
    notifications.post(kSaved);
    EXPECT_TRUE(fellBack.empty());
    pumpUntil([&] { return !fellBack.empty(); });
    EXPECT_EQ(fellBack.size(), 1U);
}

}  // namespace
}  // namespace trimora::platform
