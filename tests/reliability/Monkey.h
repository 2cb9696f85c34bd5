#pragma once

#include <QPointF>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "PicturePool.h"
#include "WindowProgram.h"

class QMimeData;

namespace trimora::reliability {

/// Somebody who does anything at all to the program's window: presses, drags, wheel, keys, drops of whatever,
/// other sizes, several commands at once, files from a second start, quitting and starting again. The events
/// come in by the way that those of a screen take.
///
/// All chance is drawn from one generator, so that a seed repeats a run. Main thread only.
class Monkey {
 public:
    /// Works in the folder, which it fills.
    Monkey(const std::filesystem::path& folder, std::uint64_t seed);
    ~Monkey();

    /// One event, and what follows from it at once.
    void act();

    /// Lets go of all keys and buttons, says No to every question, brings the window back and waits until
    /// nothing moves.
    void rest();

    [[nodiscard]] WindowProgram& program() { return *program_; }

    /// What it did last, for the message of a failure.
    [[nodiscard]] std::string lastActs() const;

    struct Counts {
        int starts = 0;
        int drops = 0;
        int offers = 0;       ///< files handed over from outside
        int nestedLoops = 0;  ///< drags out of the window, which hold the program in a loop of their own
    };
    [[nodiscard]] const Counts& counts() const { return counts_; }

 private:
    struct Kind {
        const char* name;
        int weight;
        void (Monkey::*act)();
    };
    static const std::vector<Kind>& kinds();

    void start();
    void startAgain();

    // Chance.
    [[nodiscard]] int number(int from, int to);
    [[nodiscard]] bool chance(int percent) { return number(1, 100) <= percent; }
    template <typename T>
    [[nodiscard]] const T& oneOf(const std::vector<T>& list) {
        return list[static_cast<std::size_t>(number(0, static_cast<int>(list.size()) - 1))];
    }

    // Kinds of acts.
    void movePointer();
    void pressButton();
    void releaseButton();
    void click();
    void turnWheel();
    void typeKey();
    void holdKey();
    void letKeyGo();
    void burstOfShortcuts();
    void dragSomethingOver();
    void resizeWindow();
    void changeWindowState();
    void moveFocus();
    void offerFiles();
    void callFromOutside();
    void triggerMenuItem();
    void letTimePass();

    [[nodiscard]] QWidget* front();
    [[nodiscard]] QPointF somewhere();
    void mouse(QEvent::Type type, Qt::MouseButton button);
    void key(QEvent::Type type, int code, Qt::KeyboardModifiers modifiers);
    void pressShortcut();
    void fill(QMimeData& data);
    [[nodiscard]] std::filesystem::path anyFile();
    void leaveNestedLoop();
    void letGo();
    void closeSheets();

    const std::filesystem::path folder_;
    std::mt19937_64 random_;
    const PicturePool pool_;
    OneFilePanels panels_;
    std::unique_ptr<WindowProgram> program_;
    QTimer nestedLoops_;
    Counts counts_;
    std::vector<std::string> acts_;

    QPointF pointer_;
    Qt::MouseButtons buttons_;
    QPointer<QWindow> pressedIn_;
    Qt::KeyboardModifiers modifiers_;
    std::set<int> heldKeys_;
    int timestamp_ = 0;  // milliseconds
};

}  // namespace trimora::reliability
