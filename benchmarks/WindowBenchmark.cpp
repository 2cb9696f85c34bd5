// From the mouse to the pixels of a real window, and from a file to its first frame. Needs a display.
#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <thread>
#include <vector>

#include <jpeglib.h>

#include "Photograph.h"
#include "controls/AppStyle.h"
#include "editor/CutViewWidget.h"
#include "foundation/Log.h"
#include "main/Demo.h"
#include "main/DesktopHost.h"
#include "main/Wiring.h"

namespace {

using namespace trimora;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using std::filesystem::path;

constexpr int kWindowWidth = 1400;
constexpr int kWindowHeight = 900;
constexpr int kBrush = 200;
constexpr int kStep = 4;  // points from one event to the next: more than from one stamp to the next
constexpr int kEventsOfAStroke = 150;
constexpr int kStrokes = 20;
constexpr milliseconds kEventTime{1};

double millisecondsBetween(steady_clock::time_point from, steady_clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

/// Tells when everything that was to be painted of a window has been handed to the screen.
class WatchedApplication final : public QApplication {
 public:
    using QApplication::QApplication;

    void watch(const QWidget* window, std::function<void()> painted) {
        window_ = window;
        painted_ = std::move(painted);
    }

    bool notify(QObject* receiver, QEvent* event) override {
        const bool request = receiver == window_ && event->type() == QEvent::UpdateRequest;
        const bool taken = QApplication::notify(receiver, event);
        if (request)
            painted_();
        return taken;
    }

 private:
    const QWidget* window_ = nullptr;
    std::function<void()> painted_;
};

/// What a window shows, as it was handed to the screen.
const QImage& shownIn(const QWidget& window) {
    static const QImage nothing;
    const QPaintDevice* const shown = window.backingStore()->paintDevice();
    const bool isImage = shown != nullptr && shown->devType() == QInternal::Image;
    return isImage ? static_cast<const QImage&>(*shown) : nothing;
}

/// The pictures here are coloured; what shows where they were cut away is grey.
bool isPicture(const QImage& shown, QPoint at) {
    const QColor colour = shown.pixelColor(at);
    return std::abs(colour.red() - colour.blue()) > 8;
}

/// A stroke to the right at a steady pace: when each event was sent, and how far the stroke reached on the
/// screen at each time.
class StrokeWatch {
 public:
    StrokeWatch(WatchedApplication& application, QWidget& window, QWidget& canvas)
        : application_(application), window_(window), canvas_(canvas) {}

    void draw(QPoint start) {
        const QPoint inWindow = canvas_.mapTo(&window_, start);
        int edge = inWindow.x();
        sightings_.clear();
        application_.watch(&window_, [&] {
            const QImage& shown = shownIn(window_);
            while (edge < shown.width() - 1 && !isPicture(shown, {edge, inWindow.y()}))
                ++edge;
            sightings_.push_back({edge, steady_clock::now()});
        });
        sent_.assign(kEventsOfAStroke, {});
        send(QEvent::MouseButtonPress, start);
        settle();
        const int firstEdge = edge;
        const std::clock_t before = std::clock();
        std::thread hand([&] { move(start); });
        while (!handIsDone_)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        hand.join();
        handIsDone_ = false;
        processorTime_ += static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        settle();
        take(firstEdge);
        send(QEvent::MouseButtonRelease, start + QPoint(kStep * kEventsOfAStroke, 0));
        settle();
        application_.watch(nullptr, {});
    }

    void print(const char* name) {
        std::sort(latencies_.begin(), latencies_.end());
        const auto at = [this](double share) {
            return latencies_[static_cast<std::size_t>(share * static_cast<double>(latencies_.size() - 1))];
        };
        std::printf("  %-28s median %6.2f ms, 90 %% %6.2f, 99 %% %6.2f, most %6.2f (%zu events)\n", name,
                    at(0.5), at(0.9), at(0.99), at(1), latencies_.size());
        std::printf("  %-28s %.2f ms of processor time an event\n", "",
                    1000 * processorTime_ / static_cast<double>(latencies_.size()));
        std::fflush(stdout);
    }

 private:
    struct Sighting {
        int edge;
        steady_clock::time_point when;
    };

    static void settle() {
        const auto end = steady_clock::now() + milliseconds(150);
        while (steady_clock::now() < end)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }

    QMouseEvent* event(QEvent::Type type, QPoint place) const {
        const bool moves = type == QEvent::MouseMove;
        return new QMouseEvent(
            type, place, canvas_.mapToGlobal(QPointF(place)), moves ? Qt::NoButton : Qt::LeftButton,
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    }
    void send(QEvent::Type type, QPoint place) { QCoreApplication::postEvent(&canvas_, event(type, place)); }

    /// On a thread of its own, as the mouse does not wait for the program either.
    void move(QPoint start) {
        auto next = steady_clock::now();
        for (std::size_t i = 0; i < sent_.size(); ++i) {
            std::this_thread::sleep_until(next += kEventTime);
            sent_[i] = steady_clock::now();
            send(QEvent::MouseMove, start + QPoint(kStep * (static_cast<int>(i) + 1), 0));
        }
        QMetaObject::invokeMethod(&application_, [this] { handIsDone_ = true; });
    }

    /// `firstEdge` is how far the press alone reached.
    void take(int firstEdge) {
        for (std::size_t i = 0; i < sent_.size(); ++i) {
            const int due = firstEdge + kStep * static_cast<int>(i + 1) - kStep / 2;
            const auto seen = std::find_if(sightings_.begin(), sightings_.end(),
                                           [due](const Sighting& each) { return each.edge >= due; });
            if (seen == sightings_.end()) {
                std::fprintf(stderr, "a stroke never reached %d\n", due);
                std::exit(1);
            }
            latencies_.push_back(millisecondsBetween(sent_[i], seen->when));
        }
    }

    WatchedApplication& application_;
    QWidget& window_;
    QWidget& canvas_;
    bool handIsDone_ = false;
    double processorTime_ = 0;  // seconds, of all threads, while events came
    std::vector<steady_clock::time_point> sent_;
    std::vector<Sighting> sightings_;
    std::vector<double> latencies_;
};

/// The least that a program can do: a line drawn into a bitmap, and that part of it shown.
class BareCanvas final : public QWidget {
 public:
    BareCanvas() {
        setAttribute(Qt::WA_OpaquePaintEvent);
        resize(kWindowWidth, kWindowHeight);
        clear();
    }
    void clear() {
        canvas_.fill(QColor(200, 60, 90));
        update();
    }

 protected:
    void mousePressEvent(QMouseEvent* event) override {
        last_ = event->position();
        drawTo(last_);
    }
    void mouseMoveEvent(QMouseEvent* event) override { drawTo(event->position()); }
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.drawImage(event->rect(), canvas_, event->rect());
    }

 private:
    void drawTo(QPointF place) {
        QPainter painter(&canvas_);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(110, 110, 110), kBrush, Qt::SolidLine, Qt::RoundCap));
        if (last_ == place)
            painter.drawPoint(place);
        else
            painter.drawLine(last_, place);
        const int reach = kBrush / 2 + 2;
        update(QRectF(last_, place).normalized().toAlignedRect().adjusted(-reach, -reach, reach, reach));
        last_ = place;
    }

    QImage canvas_{kWindowWidth, kWindowHeight, QImage::Format_RGB32};
    QPointF last_;
};

/// Sleeps in between, as a program does: a loop that asks all the time would take a core from the work.
void waitFor(const std::function<bool()>& done) {
    QTimer look;
    look.start(5);
    while (!done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void waitForPixels(const QWidget& window) {
    waitFor([&] { return window.backingStore() != nullptr && !shownIn(window).isNull(); });
}

/// In the format that the name's ending tells.
path writePicture(const path& file, const foundation::Bitmap& picture) {
    const auto view = picture.view();
    const cv::Mat pixels(view.height, view.width, CV_8UC4, const_cast<std::uint8_t*>(view.pixels),
                         view.stride);
    cv::imwrite(file.string(), pixels);
    return file;
}

/// The middle one of seven, after one that does not count.
double medianOfSeven(const std::function<double()>& measured) {
    (void)measured();
    std::vector<double> times;
    for (int round = 0; round < 7; ++round)
        times.push_back(measured());
    std::nth_element(times.begin(), times.begin() + 3, times.end());
    return times[3];
}

double timeOf(const std::function<void()>& job) {
    const auto start = steady_clock::now();
    job();
    return millisecondsBetween(start, steady_clock::now());
}

/// What the library alone takes for a JPEG file in memory that has been decoded once before.
double bareDecode(const path& file) {
    std::FILE* const in = std::fopen(file.c_str(), "rb");
    std::vector<unsigned char> bytes(std::filesystem::file_size(file));
    const std::size_t read = std::fread(bytes.data(), 1, bytes.size(), in);
    std::fclose(in);
    std::vector<unsigned char> pixels;
    return medianOfSeven([&] {
        return timeOf([&] {
            jpeg_decompress_struct jpeg;
            jpeg_error_mgr errors;
            jpeg.err = jpeg_std_error(&errors);
            jpeg_create_decompress(&jpeg);
            jpeg_mem_src(&jpeg, bytes.data(), read);
            jpeg_read_header(&jpeg, TRUE);
            jpeg.out_color_space = JCS_EXT_BGRX;
            jpeg_start_decompress(&jpeg);
            const std::size_t stride = std::size_t{4} * jpeg.output_width;
            pixels.resize(stride * jpeg.output_height);
            while (jpeg.output_scanline < jpeg.output_height) {
                JSAMPROW row = pixels.data() + stride * jpeg.output_scanline;
                jpeg_read_scanlines(&jpeg, &row, 1);
            }
            jpeg_finish_decompress(&jpeg);
            jpeg_destroy_decompress(&jpeg);
        });
    });
}

/// What the toolkit's reader takes, as a program calls it.
double toolkitsReader(const path& file) {
    return medianOfSeven([&] {
        return timeOf([&] {
            if (QImage(QString::fromStdString(file.string())).isNull())
                std::exit(1);
        });
    });
}

/// The whole program in its window, with a picture of 100 megapixels and with one of 24.
class Program {
 public:
    explicit Program(WatchedApplication& application)
        : application_(application), desktop_(panels_), program_(desktop_.host()) {
        program_.shell().window().resize(kWindowWidth, kWindowHeight);
        program_.show();
        waitForPixels(window());
    }

    /// Milliseconds until the picture's first frame was on the screen.
    double open(const path& file) {
        editor::CutViewWidget& canvas = *program_.editor().outlets().viCut;
        const auto before = canvas.view().image();
        double shown = -1;
        const auto start = steady_clock::now();
        application_.watch(&window(), [&] {
            const QPoint middle = canvas.mapTo(&window(), canvas.rect().center());
            if (shown < 0 && canvas.view().image() != before && isPicture(shownIn(window()), middle))
                shown = millisecondsBetween(start, steady_clock::now());
        });
        program_.editor().draggingFilesComplete_needsWait({file}, false);
        waitFor([&] { return shown >= 0 && !program_.isBusy(); });
        application_.watch(nullptr, {});
        return shown;
    }

    void inputToScreen() {
        editor::CutViewWidget& canvas = *program_.editor().outlets().viCut;
        canvas.view().setBrushDiameter(kBrush);
        StrokeWatch watch(application_, window(), canvas);
        for (int stroke = 0; stroke < kStrokes; ++stroke) {
            const QPoint start(kBrush, canvas.height() / 2);
            watch.draw(start);
            program_.editor().performSelector("back_pressed:");
            waitFor([&] { return isPicture(shownIn(window()), canvas.mapTo(&window(), start)); });
        }
        watch.print("Trimora, 100 MP");
    }

 private:
    QWidget& window() { return program_.shell().window(); }

    WatchedApplication& application_;
    DemoPanels panels_{"unused.png"};
    DesktopHost desktop_;
    Wiring program_;
};

void barePeer(WatchedApplication& application) {
    BareCanvas canvas;
    canvas.show();
    waitForPixels(canvas);
    StrokeWatch watch(application, canvas, canvas);
    for (int stroke = 0; stroke < kStrokes; ++stroke) {
        canvas.clear();
        watch.draw({kBrush, kWindowHeight / 2});
    }
    watch.print("a line in a bare window");
}

void openings(Program& program, const path& jpeg, const path& png) {
    std::printf("open a picture of 24 MP to its first frame on the screen, median of 7\n");
    const double ours = medianOfSeven([&] { return program.open(jpeg); });
    const double bare = bareDecode(jpeg);
    const double toolkit = toolkitsReader(jpeg);
    std::printf(
        "  JPEG %.1f ms: %.2f times libjpeg-turbo alone (%.1f ms); Qt's reader takes %.2f times as long\n",
        ours, ours / bare, bare, toolkit / ours);
    const double oursPng = medianOfSeven([&] { return program.open(png); });
    std::printf("  PNG %.1f ms: Qt's reader takes %.2f times as long\n", oursPng,
                toolkitsReader(png) / oursPng);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    WatchedApplication application(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QCoreApplication::setApplicationName(QStringLiteral("Trimora"));
    controls::applyAppStyle();
    char folder[] = "window-benchmark-XXXXXX";
    if (::mkdtemp(folder) == nullptr)
        return 1;
    const path home = std::filesystem::absolute(folder);
    for (const char* const name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        ::setenv(name, home.c_str(), 1);
    const path large = writePicture(
        home / "large.jpg", foundation::Bitmap::createFilled(12000, 8334, {40, 60, 210, 255}).value());
    const foundation::Bitmap photograph = benchmarks::photograph(6000, 4000);
    const path jpeg = writePicture(home / "usual.jpg", photograph);
    const path png = writePicture(home / "usual.png", photograph);
    {
        Program program(application);
        openings(program, jpeg, png);
        (void)program.open(large);
        std::printf("input to screen: brush of %d points, 1,000 events a second\n", kBrush);
        program.inputToScreen();
    }
    barePeer(application);
    std::filesystem::remove_all(home);
    return 0;
}
