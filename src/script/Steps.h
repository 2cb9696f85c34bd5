#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/Geometry.h"

/// The steps of an edit script, as plain values. docs/formats/edit-script.md tells what each does.
///
/// Points are view points, y-up, fractions allowed. Paths are as written, relative ones to the folder that
/// the program works in. A default-made step is one that the reader would accept where it has no fields.
namespace trimora::script {

using foundation::Point;

/// The cut view gets this size, in points.
struct ViewStep {
    int width = 1;
    int height = 1;
    friend bool operator==(const ViewStep&, const ViewStep&) = default;
};

/// Files come, still being written where `wait` is set; the first readable one is shown.
struct OpenStep {
    std::vector<std::string> files;
    bool wait = false;
    friend bool operator==(const OpenStep&, const OpenStep&) = default;
};

/// Files are dragged onto the editor and dropped.
struct DropStep {
    std::vector<std::string> files;
    friend bool operator==(const DropStep&, const DropStep&) = default;
};

enum class Button : std::uint8_t { left, right };

struct MouseStep {
    enum class Type : std::uint8_t { down, drag, up, move, enter, exit, scroll };
    Type type = Type::down;
    Point at;
    /// As the platform reports it: of a drag with y down, of a wheel in y. None for a drag: the way from the
    /// place before.
    std::optional<Point> delta;
    Button button = Button::left;
    friend bool operator==(const MouseStep&, const MouseStep&) = default;
};

/// Down at the first point, drags through the rest, up at the last.
struct StrokeStep {
    std::vector<Point> points;
    Button button = Button::left;
    friend bool operator==(const StrokeStep&, const StrokeStep&) = default;
};

/// The modifier keys held from now on.
struct ModifiersStep {
    bool option = false;
    bool command = false;
    friend bool operator==(const ModifiersStep&, const ModifiersStep&) = default;
};

/// A key goes down; the code is that of a place on the keyboard.
struct KeyStep {
    int code = 0;
    friend bool operator==(const KeyStep&, const KeyStep&) = default;
};

/// Red, green, blue, alpha, 0..1, not premultiplied.
struct Rgba {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

/// A property of the cut view; the kind of value is that of the property (see properties()).
struct SetStep {
    using Value = std::variant<bool, double, std::optional<Rgba>>;
    std::string property;
    Value value;
    friend bool operator==(const SetStep&, const SetStep&) = default;
};

/// A message by its name to one of those that take them (see selectorsOf()).
enum class Receiver : std::uint8_t { editor, window, app, cutView };
struct PerformStep {
    Receiver on = Receiver::editor;
    std::string selector;
    friend bool operator==(const PerformStep&, const PerformStep&) = default;
};

/// What the next panel of its kind is answered. Files: none where the panel is cancelled.
struct AnswerStep {
    struct OpenPanel {
        std::optional<std::vector<std::string>> files;
        friend bool operator==(const OpenPanel&, const OpenPanel&) = default;
    };
    struct SavePanel {
        std::optional<std::string> file;
        friend bool operator==(const SavePanel&, const SavePanel&) = default;
    };
    struct Alert {
        int button = 1000;  ///< 1000 is the first, each further one counts one more
        friend bool operator==(const Alert&, const Alert&) = default;
    };
    struct Warning {
        bool yes = false;
        friend bool operator==(const Warning&, const Warning&) = default;
    };
    std::variant<OpenPanel, SavePanel, Alert, Warning> with;
    friend bool operator==(const AnswerStep&, const AnswerStep&) = default;
};

/// A size control is dragged to a value and let go, or its field gets another text, which is committed.
struct SliderStep {
    enum class Which : std::uint8_t { eraserSize, invertSize, sldBrushDiameter2 };
    Which which = Which::eraserSize;
    std::variant<double, std::string> to;  ///< the value, or the text
    friend bool operator==(const SliderStep&, const SliderStep&) = default;
};

/// Presses in the colour picker, each where it is given: shares 0..1 of the strip and of the field, from the
/// bottom left.
struct ColorStep {
    std::optional<double> hue;
    std::optional<Point> shade;
    friend bool operator==(const ColorStep&, const ColorStep&) = default;
};

/// The answer to the consent question.
struct ConsentStep {
    bool answer = false;
    friend bool operator==(const ConsentStep&, const ConsentStep&) = default;
};

/// The date and time of day, local.
struct ClockStep {
    int year = 2026;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    friend bool operator==(const ClockStep&, const ClockStep&) = default;
};

struct SettleStep {
    friend bool operator==(const SettleStep&, const SettleStep&) = default;
};

struct AdvanceStep {
    double seconds = 0;
    friend bool operator==(const AdvanceStep&, const AdvanceStep&) = default;
};

struct StateStep {
    friend bool operator==(const StateStep&, const StateStep&) = default;
};

/// Single pixels; x and y count from the top left corner.
struct SampleStep {
    enum class Of : std::uint8_t { mask, color, result, picture, view };
    Of of = Of::mask;
    std::vector<Point> at;
    friend bool operator==(const SampleStep&, const SampleStep&) = default;
};

/// A picture, as a PNG file.
struct WriteStep {
    enum class What : std::uint8_t { result, mask, view, window, cursor };
    What what = What::result;
    std::string to;
    friend bool operator==(const WriteStep&, const WriteStep&) = default;
};

struct LogStep {
    friend bool operator==(const LogStep&, const LogStep&) = default;
};

struct EventsStep {
    friend bool operator==(const EventsStep&, const EventsStep&) = default;
};

using Step = std::variant<ViewStep, OpenStep, DropStep, MouseStep, StrokeStep, ModifiersStep, KeyStep,
                          SetStep, PerformStep, AnswerStep, SliderStep, ColorStep, ConsentStep, ClockStep,
                          SettleStep, AdvanceStep, StateStep, SampleStep, WriteStep, LogStep, EventsStep>;

}  // namespace trimora::script
