#include "batch/InfoCommand.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/JsonLine.h"
#include "batch/PictureInput.h"
#include "batch/PictureReport.h"

namespace trimora::batch {
namespace {

using foundation::Error;
using foundation::Result;

constexpr const char* kHelpPage =
    "Tells what picture files are, and how they would open.\n"
    "\n"
    "  trimora info PICTURE... [--json]\n"
    "\n"
    "For each file: its format, size, orientation and colour profile, the pictures in it, the size that\n"
    "it opens with, and the size of the mask that would be painted over it; or why it does not open.\n"
    "\"-\" stands for standard input.\n"
    "\n"
    "  --json      one line of JSON for each file\n"
    "  --help      shows this page\n"
    "\n"
    "Exit status: 0 all would open, 1 some would not, 2 the command makes no sense.\n";

struct InfoOrder {
    std::vector<std::string> files;
    bool json = false;
    bool help = false;
};

Result<InfoOrder> parse(std::span<const char* const> words) {
    InfoOrder order;
    bool options = true;
    for (const std::string_view word : words) {
        if (!options || !word.starts_with('-') || word == kStandardStream)
            order.files.emplace_back(word);
        else if (word == "--")
            options = false;
        else if (word == "--json")
            order.json = true;
        else if (word == "--help" || word == "-h")
            order.help = true;
        else
            return Error{"the option " + std::string(word) + " is not known"};
    }
    if (order.files.empty() && !order.help)
        return Error{"no picture is named"};
    if (std::ranges::count(order.files, kStandardStream) > 1)
        return Error{"only one thing can be read from standard input"};
    return order;
}

Result<Opening> openingOf(const PictureInput& input, const codecs::PictureFileDecoder& decoder,
                          foundation::Workers& workers) {
    Result<OpenedPicture> opened = openPicture(input.bytes(), decoder, workers);
    if (!opened)
        return opened.error();
    const foundation::Size size = opened->picture->size();
    return Opening{size, cutengine::PlaneSize::forPicture(size), std::move(opened->representations),
                   std::move(opened->notice)};
}

PictureReport reportOn(const std::string& file, std::istream& in, const codecs::PictureFileDecoder& decoder,
                       foundation::Workers& workers) {
    const Result<PictureInput> input = PictureInput::read(file, in, decoder);
    if (!input)
        return {file, std::nullopt, input.error()};
    const Result<codecs::PictureFacts> facts = decoder.facts(input->bytes());
    if (!facts)
        return {file, std::nullopt, facts.error()};
    return {file, *facts, openingOf(*input, decoder, workers)};
}

}  // namespace

int info(std::span<const char* const> words, Surroundings& surroundings) {
    const Result<InfoOrder> order = parse(words);
    if (!order) {
        surroundings.err << "trimora info: " << order.error().message << "; --help tells more" << std::endl;
        return kBadUsage;
    }
    if (order->help) {
        surroundings.out << kHelpPage << std::flush;
        return kAllWell;
    }
    const std::unique_ptr<foundation::Workers> workers = surroundings.makeWorkers(surroundings.cores);
    const codecs::PictureFileDecoder decoder(*workers);
    bool allOpen = true;
    for (const std::string& file : order->files) {
        const PictureReport report = reportOn(file, surroundings.in, decoder, *workers);
        allOpen &= report.opening.ok();
        if (order->json)
            writeJsonLine(surroundings.out, jsonOf(report));
        else
            surroundings.out << paragraphOf(report) << std::flush;
    }
    return allOpen && surroundings.out.good() ? kAllWell : kSomeFailed;
}

}  // namespace trimora::batch
