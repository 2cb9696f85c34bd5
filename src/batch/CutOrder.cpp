#include "batch/CutOrder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <string_view>
#include <utility>

#include "batch/Surroundings.h"

namespace trimora::batch {
namespace {

using foundation::Error;
using foundation::Result;

struct Switch {
    std::string_view name;
    bool CutOrder::*target;
};

constexpr std::array kSwitches = {
    Switch{"--crop", &CutOrder::crop}, Switch{"--write-mask", &CutOrder::writeMask},
    Switch{"--json", &CutOrder::json}, Switch{"--force", &CutOrder::force},
    Switch{"--help", &CutOrder::help}, Switch{"-h", &CutOrder::help},
};

/// An option that takes the word after it.
struct Valued {
    std::string_view name;
    Result<void> (*take)(CutOrder& order, const std::string& word);
};

Result<void> takeBackground(CutOrder& order, const std::string& word) {
    const Result<BackgroundChoice> choice = BackgroundChoice::parse(word);
    if (!choice)
        return choice.error();
    order.background = *choice;
    return {};
}

Result<void> takeJobs(CutOrder& order, const std::string& word) {
    const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), order.jobs);
    const bool whole = fault == std::errc() && end == word.data() + word.size();
    if (!whole || order.jobs < 1 || order.jobs > CutOrder::kMostJobs)
        return Error{"--jobs takes a number from 1 to " + std::to_string(CutOrder::kMostJobs) + ", not \"" +
                     word + '"'};
    return {};
}

template <auto Member>
Result<void> takeName(CutOrder& order, const std::string& word) {
    if (word.empty())
        return Error{"a file name is empty"};
    order.*Member = word;
    return {};
}

constexpr std::array kValued = {
    Valued{"-o", &takeName<&CutOrder::output>},   Valued{"--out-dir", &takeName<&CutOrder::outFolder>},
    Valued{"--mask", &takeName<&CutOrder::mask>}, Valued{"--strokes", &takeName<&CutOrder::strokes>},
    Valued{"--background", &takeBackground},      Valued{"--jobs", &takeJobs},
};

bool isStandard(const std::optional<std::string>& name) {
    return name == kStandardStream;
}

int readersOfStandardInput(const CutOrder& order) {
    const auto inputs = std::ranges::count(order.inputs, kStandardStream);
    return static_cast<int>(inputs) + isStandard(order.mask) + isStandard(order.strokes);
}

/// What the words say against each other.
Result<void> check(const CutOrder& order) {
    if (order.inputs.empty())
        return Error{"no picture is named"};
    if (std::ranges::any_of(order.inputs, &std::string::empty))
        return Error{"a file name is empty"};
    if (order.output.has_value() == order.outFolder.has_value())
        return Error{"where the result goes is to be said by either -o or --out-dir"};
    if (order.output && order.inputs.size() > 1)
        return Error{"-o takes one picture; several go to a folder, --out-dir"};
    if (isStandard(order.output) && order.writeMask)
        return Error{"a result on standard output has no name to keep the mask beside (--write-mask)"};
    if (isStandard(order.output) && order.json)
        return Error{"-o - and --json both want standard output"};
    if (readersOfStandardInput(order) > 1)
        return Error{"only one thing can be read from standard input"};
    return {};
}

}  // namespace

Result<BackgroundChoice> BackgroundChoice::parse(const std::string& word) {
    if (word == "none")
        return BackgroundChoice{};
    if (word == "blur")
        return BackgroundChoice{Kind::blur, {}};
    unsigned rgb = 0;
    const char* const end = word.data() + word.size();
    if (word.size() == 7 && word.front() == '#') {
        const auto [stop, fault] = std::from_chars(word.data() + 1, end, rgb, 16);
        if (fault == std::errc() && stop == end)
            return BackgroundChoice{
                Kind::colour,
                {(rgb >> 16 & 255U) / 255.0, (rgb >> 8 & 255U) / 255.0, (rgb & 255U) / 255.0, 1}};
    }
    return Error{"--background takes none, blur or #RRGGBB, not \"" + word + '"'};
}

Result<CutOrder> CutOrder::parse(std::span<const char* const> words) {
    CutOrder order;
    bool options = true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (!options || !word.starts_with('-') || word == kStandardStream) {
            order.inputs.emplace_back(word);
            continue;
        }
        if (word == "--") {
            options = false;
            continue;
        }
        if (const auto* const found = std::ranges::find(kSwitches, word, &Switch::name);
            found != kSwitches.end()) {
            order.*found->target = true;
            continue;
        }
        const auto* const found = std::ranges::find(kValued, word, &Valued::name);
        if (found == kValued.end())
            return Error{"the option " + std::string(word) + " is not known"};
        if (i + 1 == words.size())
            return Error{"the option " + std::string(word) + " lacks a word"};
        if (Result<void> taken = found->take(order, words[++i]); !taken)
            return taken.error();
    }
    if (order.help)
        return order;
    if (Result<void> checked = check(order); !checked)
        return checked.error();
    return order;
}

const char* CutOrder::helpPage() {
    return "Cuts subjects out of pictures, without a window.\n"
           "\n"
           "  trimora cut PICTURE -o RESULT [OPTION...]\n"
           "  trimora cut PICTURE... --out-dir FOLDER [OPTION...]\n"
           "\n"
           "Pictures are JPEG, PNG, TIFF or GIF files; results are PNG files. \"-\" stands for standard\n"
           "input or output. In a folder a result has its picture's name, with .png.\n"
           "\n"
           "  -o RESULT           the file that the result is written to\n"
           "  --out-dir FOLDER    the folder that the results are written to; made where it is not there\n"
           "  --mask MASK         a picture of any size that says what is kept: its transparency, or where\n"
           "                      it has none its grey (white keeps, black cuts away)\n"
           "  --strokes SCRIPT    an edit script whose strokes are painted over the mask\n"
           "  --background WHAT   what shows where the picture is cut away: none, blur or #RRGGBB\n"
           "  --crop              cuts the result down to what shows of the picture\n"
           "  --write-mask        keeps the mask beside the result, as NAME.mask.png\n"
           "  --jobs N            works on N pictures at a time; as many as there are cores otherwise\n"
           "  --json              tells about each picture in one line of JSON on standard output\n"
           "  --force             replaces files that exist; they are left alone otherwise\n"
           "  --help              shows this page\n"
           "\n"
           "Exit status: 0 all well, 1 some pictures failed, 2 the command makes no sense.\n";
}

}  // namespace trimora::batch
