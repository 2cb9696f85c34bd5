#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "BadPictures.h"
#include "Heartbeat.h"
#include "Processes.h"
#include "WindowProgram.h"
#include "app/MessageLine.h"
#include "codecs/SampleFilesForTests.h"
#include "main/DesktopHost.h"
#include "testing/TemporaryFolder.h"

// Whatever is being opened, the window goes on: on real threads, in real time, with a heart that beats from
// the toolkit's event loop.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using ::testing::IsEmpty;
using ::testing::Lt;
using ::testing::SizeIs;

// What the sanitizers do to every access takes several times as long.
constexpr milliseconds kLongestSilenceAtOpening{kSanitized ? 1000 : 100};
constexpr int kPatience = 300'000;  // milliseconds; 500 MB with sanitizers, on a machine with other work
constexpr milliseconds kBeat{5};

class OpeningKeepsTheWindowAlive : public ::testing::Test {
 protected:
    OpeningKeepsTheWindowAlive() {
        for (const char* const name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            ::setenv(name, (folder_.path() / name).c_str(), 1);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
        host_ = std::make_unique<DesktopHost>(panels_);
        wiring_ = std::make_unique<Wiring>(host_->host());
        wiring_->shell().messages().onLine([this](app::MessageLine::Kind kind, const std::string& line) {
            if (kind == app::MessageLine::Kind::trouble)
                troubles_.push_back(line);
        });
        wiring_->show();
        put("cat.png", codecs::samples::png(codecs::samples::quarters(300, 200).view()));
        open("cat.png");
        rest();
        troubles_.clear();
        QObject::connect(&beats_, &QTimer::timeout, [this] { heart_.beat(); });
        beats_.start(kBeat);
    }

    void put(const std::string& name, const Buffer& bytes) const {
        std::ofstream(folder_.path() / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    [[nodiscard]] fs::path file(const std::string& name) const { return folder_.path() / name; }

    void open(const std::string& name, bool isInTheMaking = false) {
        wiring_->editor().draggingFilesComplete_needsWait({file(name)}, isInTheMaking);
    }

    /// Until nothing is being read, and the window has shown what came of it.
    void rest() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !wiring_->isBusy(); }, kPatience));
        constexpr int kShow = 300;
        QTest::qWait(kShow);
    }

    [[nodiscard]] foundation::Size pictureSize() { return wiring_->editor().cutView().image()->size(); }

    void expectRefusal(const std::string& name) {
        SCOPED_TRACE(name);
        const auto before = pictureSize();
        expectNoGap([&] {
            open(name);
            rest();
            EXPECT_THAT(std::exchange(troubles_, {}), SizeIs(1));
            EXPECT_EQ(pictureSize(), before);
        });
    }
    void expectPicture(const std::string& name, foundation::Size size, bool isInTheMaking = false) {
        SCOPED_TRACE(name);
        expectNoGap([&] {
            open(name, isInTheMaking);
            rest();
            EXPECT_THAT(troubles_, IsEmpty());
            EXPECT_EQ(pictureSize(), size);
        });
    }
    /// A silence that is the program's comes again; one that is the machine's seldom does.
    void expectNoGap(const std::function<void()>& opening) {
        constexpr int kAttempts = 3;
        milliseconds silence = milliseconds::max();
        for (int attempt = 0; attempt < kAttempts && silence >= kLongestSilenceAtOpening; ++attempt) {
            heart_.beat();
            (void)heart_.longestSilence();
            opening();
            silence = std::min(silence, heart_.longestSilence());
        }
        std::printf("%d ms at most between two beats\n", static_cast<int>(silence.count()));
        EXPECT_THAT(silence, Lt(kLongestSilenceAtOpening));
    }

    testing::TemporaryFolder folder_;
    OneFilePanels panels_{[] { return fs::path(); }, [] { return fs::path(); }};
    std::vector<std::string> troubles_;
    Heartbeat heart_;
    QTimer beats_;
    std::unique_ptr<DesktopHost> host_;
    std::unique_ptr<Wiring> wiring_;
};

TEST_F(OpeningKeepsTheWindowAlive, OfWhatIsNoFile) {
    ASSERT_EQ(::mkfifo(file("pipe.png").c_str(), S_IRUSR | S_IWUSR), 0);
    fs::create_directory(file("folder.png"));
    fs::create_symlink("/dev/zero", file("device.png"));
    fs::create_symlink("circle.png", file("circle.png"));
    for (const char* const name : {"pipe.png", "folder.png", "device.png", "circle.png", "nothing.png"})
        expectRefusal(name);
}

TEST_F(OpeningKeepsTheWindowAlive, OfHugeFilesThatAreNone) {
    constexpr std::uintmax_t kHuge = 500'000'000;
    Buffer head = codecs::samples::png(codecs::samples::quarters(30, 20).view());
    head.resize(60);
    put("huge.png", head);
    put("huge.jpg", {0xFF, 0xD8, 0xFF});
    put("huge.gif", {'G', 'I', 'F', '8', '9', 'a'});
    for (const char* const name : {"huge.png", "huge.jpg", "huge.gif"}) {
        std::error_code noRoom;
        fs::resize_file(file(name), kHuge, noRoom);
        ASSERT_FALSE(noRoom) << noRoom.message();
        expectRefusal(name);
    }
}

TEST_F(OpeningKeepsTheWindowAlive, OfALargePicture) {
    constexpr int kWidth = 8000;
    constexpr int kHeight = 5000;
    put("large.jpg", codecs::samples::jpeg(codecs::samples::quarters(kWidth, kHeight).view()));
    expectPicture("large.jpg", {kWidth, kHeight});
    open("cat.png");
    rest();
    expectPicture("large.jpg", {kWidth, kHeight});
}

TEST_F(OpeningKeepsTheWindowAlive, OfAFileThatIsStillBeingWritten) {
    const Buffer whole = codecs::samples::jpeg(codecs::samples::quarters(600, 400).view());
    put("slow.jpg", {});
    std::thread writer([&] {
        constexpr std::size_t kPart = 4096;
        constexpr milliseconds kPause{30};
        std::ofstream stream(file("slow.jpg"), std::ios::binary);
        for (std::size_t done = 0; done < whole.size(); done += kPart) {
            stream.write(reinterpret_cast<const char*>(whole.data() + done),
                         static_cast<std::streamsize>(std::min(kPart, whole.size() - done)));
            stream.flush();
            std::this_thread::sleep_for(kPause);
        }
    });
    expectPicture("slow.jpg", {600, 400}, true);
    writer.join();
}

}  // namespace
}  // namespace trimora::reliability
