#pragma once

#include <QFont>
#include <thread>

namespace trimora::platform {

/// Reads the machine's font settings on a thread of its own while the toolkit starts, which would read them
/// by itself with the first text. They are dozens of files, and a tenth of the time until the window came.
///
/// Made before the QApplication; the destructor waits. Once in a process.
class FontsAhead {
 public:
    FontsAhead();
    ~FontsAhead() { wait(); }
    FontsAhead(const FontsAhead&) = delete;
    FontsAhead& operator=(const FontsAhead&) = delete;

    /// Returns once they are read. Before the first text: who is not waited for would do the work twice.
    void wait();

 private:
    std::thread thread_;
};

/// Finds out which of the machine's fonts stand for this one. The toolkit keeps that for all threads, so one
/// that does it beside the main thread saves that the time. After the QApplication was made. Any thread.
void findFontsFor(const QFont& font);

}  // namespace trimora::platform
