#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QApplication>
#include <QDialog>
#include <QPixmapCache>
#include <QProcess>
#include <QPushButton>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "AllocationFaults.h"
#include "PicturePool.h"
#include "Processes.h"
#include "WindowOrder.h"
#include "WindowProgram.h"
#include "analytics/public/Telemetrix.h"
#include "app/GdprSheet.h"
#include "cli/Toolkit.h"
#include "codecs/SampleFilesForTests.h"
#include "editor/CutViewWidget.h"
#include "foundation/Log.h"
#include "host/HttpsServerForTests.h"
#include "testing/Depth.h"
#include "testing/TemporaryFolder.h"

// A day of work, with a network that comes and goes and a program that crashes now and then: what is not the
// person's is given back.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using analytics::Telemetrix;
using ::testing::IsEmpty;

// The home of a program that is to crash, and the signal by which; set for that process alone.
constexpr const char* kCrashHome = "TRIMORA_TEST_CRASH_HOME";
constexpr const char* kCrashSignal = "TRIMORA_TEST_CRASH_SIGNAL";
constexpr const char* kCrashTest = "DISABLED_Crash.InTheMiddleOfAStroke";

Homes homesIn(const fs::path& folder) {
    return {folder / "data", folder / "config", folder / "cache"};
}

int entriesOf(const fs::path& folder) {
    std::error_code missing;
    const fs::directory_iterator entries(folder, missing);
    return missing ? 0 : static_cast<int>(std::distance(begin(entries), end(entries)));
}

int threads() {
    return entriesOf("/proc/self/task");
}

/// The program, and a hand that works with it.
class Worker {
 public:
    explicit Worker(const fs::path& folder)
        : saved_(folder / "saved.png"), program_(homesIn(folder), panels_) {
        program_.rest();
    }

    [[nodiscard]] WindowProgram& program() { return program_; }

    void agree() {
        if (app::GdprSheet* const sheet = program_.wiring().consent().sheet())
            sheet->yes().click();
        program_.wiring().telemetrix().consent().give(app::GdprConsent::Answer::yes);
        settle();
    }
    void open(const fs::path& file) {
        program_.editor().draggingFilesComplete_needsWait({file}, false);
        program_.rest();
    }
    void press(foundation::Point place) {
        widget().take(editor::MousePressed{{.button = cutengine::MouseButton::left, .location = place}});
    }
    void stroke(int number) {
        constexpr int kPlaces = 300;
        const foundation::Point from{200.0 + number % kPlaces, 200};
        const foundation::Point to{from.x + 30, 260};
        press(from);
        widget().take(editor::MouseDragged{{cutengine::MouseButton::left, to, to.x - from.x, from.y - to.y}});
        widget().take(editor::MouseReleased{{.button = cutengine::MouseButton::left, .location = to}});
        settle();
    }
    void save() {
        program_.editor().performSelector("save_pressed:");
        if (auto* const panel = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            panel->accept();
        program_.rest();
    }
    /// Another program has the keyboard for a moment, which ends a session of use.
    void lookAway() {
        QWidget other;
        other.show();
        other.activateWindow();
        settle();
        other.close();
        program_.window().activateWindow();
        settle();
    }
    void oneSecond() { program_.time().advance(1); }
    void settle() {
        program_.time().turn();
        while (program_.wiring().telemetrix().isPosting())
            program_.time().turn();
        program_.time().turn();
    }

 private:
    [[nodiscard]] editor::CutViewWidget& widget() { return *program_.editor().outlets().viCut; }

    const fs::path saved_;
    OneFilePanels panels_{[] { return fs::path(); }, [this] { return saved_; }};
    WindowProgram program_;
};

/// How much of everything one part of the day brings; parts are ended by crashes.
struct Part {
    int events = 0;
    int strokes = 0;
    int files = 0;
    int outages = 0;
};

class Soak : public ::testing::Test {
 protected:
    Soak() {
        foundation::log::setThreshold(foundation::log::Level::error);
        if (server_.isRunning())
            ::setenv("TRIMORA_ANALYTICS_URL", server_.url("200").c_str(), 1);
        ::setenv("https_proxy", "http://localhost:1", 1);
    }
    ~Soak() override {
        foundation::log::setThreshold(threshold_);
        ::unsetenv("https_proxy");
        ::unsetenv("TRIMORA_ANALYTICS_URL");
    }

    void work(Worker& worker, const Part& part) {
        worker.agree();
        int strokes = 0;
        for (int event = 0; event < part.events; ++event) {
            Telemetrix::logEvent("button open pressed");
            worker.oneSecond();
            if (event % (part.events / part.strokes) == 0)
                worker.stroke(strokes++);
            if (event % (part.events / part.files) == 0) {
                worker.save();
                worker.open(pool_.sound().front());
            }
            if (event % (part.events / part.outages / 2) == 0)
                switchNetwork(worker);
        }
        worker.open(pool_.sound().front());
        worker.stroke(0);
        isOnline_ = false;
        switchNetwork(worker);  // every part ends with the connection of a post
    }

    /// Without a network everything goes to a proxy that is not there, with one past it; libcurl looks at
    /// each post.
    void switchNetwork(Worker& worker) {
        isOnline_ = !isOnline_;
        ::setenv("no_proxy", isOnline_ ? "*" : "", 1);
        worker.lookAway();
    }

    void crash(int signal) const {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromLatin1(kCrashHome), QString::fromStdString(folder_.path().string()));
        environment.insert(QString::fromLatin1(kCrashSignal), QString::number(signal));
        program.setProcessEnvironment(environment);
        program.start(QApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_also_run_disabled_tests"),
                       QStringLiteral("--gtest_filter=%1").arg(QLatin1String(kCrashTest))});
        constexpr int kPatience = 120'000;  // milliseconds
        ASSERT_TRUE(program.waitForFinished(kPatience));
        ASSERT_EQ(program.exitStatus(), QProcess::CrashExit) << program.readAll().toStdString();
    }

    [[nodiscard]] int foldersOfTheHistory() const {
        const fs::directory_iterator entries(folder_.path() / "data" / "Trimora");
        return static_cast<int>(
            std::count_if(begin(entries), end(entries), [](const fs::directory_entry& entry) {
                return entry.is_directory() && entry.path().filename().string().starts_with("history");
            }));
    }

    const foundation::log::Level threshold_ = foundation::log::setThreshold(foundation::log::Level::error);
    const Toolkit toolkit_{Toolkit::Screen::offscreen};
    testing::TemporaryFolder folder_;
    const PicturePool pool_{folder_.path() / "pool"};
    host::HttpsServer server_;
    bool isOnline_ = true;
};

TEST(DISABLED_Crash, InTheMiddleOfAStroke) {
    const char* const home = std::getenv(kCrashHome);
    const char* const signal = std::getenv(kCrashSignal);
    if (home == nullptr || signal == nullptr)
        GTEST_SKIP() << "is run by another test";
    const struct rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const Toolkit toolkit(Toolkit::Screen::offscreen);
    Worker worker(home);
    worker.open(fs::path(home) / "pool" / "cat.png");
    worker.stroke(1);
    Telemetrix::logEvent("button open pressed");
    worker.settle();
    worker.press({200, 200});
    std::raise(std::atoi(signal));
}

TEST_F(Soak, DayOfWorkLeavesNothingBehind) {
    if (!server_.isRunning())
        GTEST_SKIP() << "no HTTPS server";
    const int crashes = testing::byDepth(3, 10, 10);
    const int scale = testing::byDepth(20, 1, 1);
    const Part part{.events = 86'400 / scale / (crashes + 1),
                    .strokes = 2'000 / scale / (crashes + 1),
                    .files = std::max(300 / scale / (crashes + 1), 1),
                    .outages = std::max(24 / scale / (crashes + 1), 1)};
    std::int64_t warm = 0;
    std::int64_t heap = 0;
    int files = 0;
    int running = 0;
    std::size_t posts = 0;
    for (int number = 0; number <= crashes; ++number) {
        auto worker = std::make_unique<Worker>(folder_.path());
        work(*worker, part);
        EXPECT_THAT(disorderIn(worker->program()), IsEmpty());
        QPixmapCache::clear();
        heap = AllocationFaults::liveBytes();
        std::printf("%lld bytes\n", static_cast<long long>(heap));
        worker.reset();
        posts += server_.takeRequests().size();
        if (number == 1) {  // what is made once has been made
            warm = heap;
            files = openFiles();
            running = threads();
        }
        if (number < crashes)
            crash(number % 2 == 0 ? SIGSEGV : SIGKILL);
    }
    std::printf("%zu posts\n", posts);
    EXPECT_NEAR(static_cast<double>(heap), static_cast<double>(warm), static_cast<double>(warm) / 100);
    EXPECT_EQ(openFiles(), files);
    EXPECT_EQ(threads(), running);
    EXPECT_EQ(entriesOf(folder_.path() / "cache" / "Trimora"), 0);
    EXPECT_EQ(foldersOfTheHistory(), 1);
    EXPECT_GT(posts, 0U);
}

TEST_F(Soak, MemoryOfLargeFilesIsGivenBackOnceThePersonRests) {
    const fs::path huge = folder_.path() / "huge.gif";
    std::ofstream(huge, std::ios::binary) << "GIF89a";
    fs::resize_file(huge, 100'000'000);
    const fs::path large = folder_.path() / "large.jpg";
    const auto bytes = codecs::samples::jpeg(codecs::samples::quarters(4000, 3000).view());
    std::ofstream(large, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    Worker worker(folder_.path());
    const auto heapAfterRest = [&](const fs::path& file) {
        constexpr double kLong = 60;  // seconds
        worker.open(file);
        worker.open(pool_.sound().front());
        worker.program().time().advance(kLong);
        return AllocationFaults::liveBytes();
    };
    constexpr std::int64_t kKept = 20'000'000;  // bytes; the parts of masks that wait for the next ones
    const std::int64_t most = heapAfterRest(pool_.sound().back()) + kKept;
    EXPECT_LT(heapAfterRest(large), most);
    EXPECT_LT(heapAfterRest(huge), most);
}

}  // namespace
}  // namespace trimora::reliability
