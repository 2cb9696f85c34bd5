#include "platform/DesktopWorkspace.h"

#include <gtest/gtest.h>

#include "foundation/Log.h"
#include "platform/ActivationToken.h"
#include "platform/BusForTests.h"
#include "testing/CapturedLog.h"

namespace trimora::platform {
namespace {

const QString kFileManager = QStringLiteral("org.freedesktop.FileManager1");
const QString kFileManagerPath = QStringLiteral("/org/freedesktop/FileManager1");

class DesktopWorkspaceTest : public ::testing::Test {
 protected:
    BusForTests bus_;
    bool opens_ = true;
    QList<QUrl> opened_;
    DesktopWorkspace workspace_{bus_.connect(), [this](const QUrl& url) {
                                    opened_ << url;
                                    return opens_;
                                }};
};

TEST_F(DesktopWorkspaceTest, TheFileManagerShowsTheFileWithTheTokenOfTheClick) {
    ServiceForTests manager(bus_.connect(), kFileManager, kFileManagerPath,
                            [](const QDBusMessage& call) { return call.createReply(); });
    activation_token::keep("token-2");
    workspace_.revealFile("/a folder/cut.png");
    workspace_.revealFile("/b/cut.png");
    pumpUntil([&] { return manager.calls("ShowItems").size() == 2; });
    EXPECT_EQ(manager.calls("ShowItems").at(0),
              (QVariantList{QStringList{"file:///a%20folder/cut.png"}, "token-2"}));
    EXPECT_EQ(manager.calls("ShowItems").at(1), (QVariantList{QStringList{"file:///b/cut.png"}, ""}));
    EXPECT_TRUE(opened_.isEmpty());
}

TEST_F(DesktopWorkspaceTest, WithoutAFileManagerTheFolderOpens) {
    workspace_.revealFile("/a folder/cut #1.png");
    EXPECT_TRUE(opened_.isEmpty()) << "revealing must not wait for the bus";
    pumpUntil([this] { return !opened_.isEmpty(); });
    EXPECT_EQ(opened_, QList<QUrl>{QUrl::fromLocalFile("/a folder")});
}

TEST_F(DesktopWorkspaceTest, AFileManagerThatRefusesLeavesItToTheFolder) {
    ServiceForTests manager(bus_.connect(), kFileManager, kFileManagerPath, [](const QDBusMessage& call) {
        return call.createErrorReply(QDBusError::NotSupported, "no");
    });
    workspace_.revealFile("/a/cut.png");
    pumpUntil([this] { return !opened_.isEmpty(); });
    EXPECT_EQ(opened_, QList<QUrl>{QUrl::fromLocalFile("/a")});
}

TEST(DesktopWorkspace, WithoutABusTheFolderOpens) {
    QList<QUrl> opened;
    DesktopWorkspace workspace(QDBusConnection("there is none"), [&](const QUrl& url) {
        opened << url;
        return true;
    });
    workspace.revealFile("/a/cut.png");
    pumpUntil([&] { return !opened.isEmpty(); });
    EXPECT_EQ(opened, QList<QUrl>{QUrl::fromLocalFile("/a")});
}

TEST_F(DesktopWorkspaceTest, AddressesAreOpenedAndFailuresAreLogged) {
    const testing::CapturedLog log;
    workspace_.openUrl("https://example.org/privacy?a=b");
    EXPECT_EQ(opened_, QList<QUrl>{QUrl("https://example.org/privacy?a=b")});
    EXPECT_TRUE(log.texts(foundation::log::Level::warning).empty());

    workspace_.openUrl("no address");
    EXPECT_EQ(opened_.size(), 1);
    opens_ = false;
    workspace_.openUrl("https://example.org/");
    EXPECT_EQ(log.texts(foundation::log::Level::warning).size(), 2U);
}

}  // namespace
}  // namespace trimora::platform
