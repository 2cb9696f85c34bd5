#include "batch/CutCommand.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>

#include "batch/CutOrder.h"
#include "batch/CutPlan.h"
#include "batch/CutReport.h"
#include "batch/MaskImage.h"
#include "batch/PictureCutter.h"
#include "batch/PictureInput.h"
#include "batch/PixelGate.h"
#include "batch/PngTarget.h"
#include "codecs/PngEncoder.h"
#include "files/RegularFile.h"

namespace trimora::batch {
namespace {

using codecs::PictureFileDecoder;
using foundation::Bitmap;
using foundation::Error;
using foundation::Result;
using foundation::Workers;

// Hours of strokes; what is larger is no script.
constexpr std::size_t kMostScriptBytes = std::size_t{256} << 20;

/// Cuts pictures of one order; several tasks at a time, each on a thread of its own.
class CutRun {
 public:
    CutRun(const CutOrder& order, CutRecipe recipe, Surroundings& surroundings, Workers& within)
        : recipe_(std::move(recipe)),
          existing_(order.force ? files::Existing::replace : files::Existing::keep),
          surroundings_(surroundings),
          within_(within) {}

    [[nodiscard]] Result<CutOutcome> run(const CutTask& task);

 private:
    struct Targets {
        PngTarget result;
        std::optional<PngTarget> mask;
    };
    [[nodiscard]] Result<Targets> targetsOf(const CutTask& task);
    [[nodiscard]] Result<void> write(const CutPicture& cut, Targets& targets);

    const CutRecipe recipe_;
    const files::Existing existing_;
    Surroundings& surroundings_;
    Workers& within_;
    const codecs::PixelBudget budget_ = codecs::PixelBudget::fromFreeMemory();
    const PictureFileDecoder decoder_{within_, budget_};
    codecs::PngEncoder encoder_{within_};
    PixelGate gate_{budget_.pixels()};
};

Result<CutOutcome> CutRun::run(const CutTask& task) {
    Result<Targets> targets = targetsOf(task);
    if (!targets)
        return targets.error();
    Result<PictureInput> input = PictureInput::read(task.input, surroundings_.in, decoder_);
    if (!input)
        return input.error();
    const Result<codecs::PictureFacts> facts = decoder_.facts(input->bytes());
    if (!facts)
        return facts.error();
    const PixelGate::Place place = gate_.enter(facts->pixels);
    Result<OpenedPicture> opened = openPicture(input->bytes(), decoder_, within_);
    *input = PictureInput();
    if (!opened)
        return opened.error();
    const Result<CutPicture> cut = cutPicture(std::exchange(opened->picture, nullptr), recipe_, within_);
    if (!cut)
        return cut.error();
    if (Result<void> written = write(*cut, *targets); !written)
        return written.error();
    return CutOutcome{cut->box, opened->notice};
}

Result<CutRun::Targets> CutRun::targetsOf(const CutTask& task) {
    Result<PngTarget> result = PngTarget::create(task.result, existing_, surroundings_.out);
    if (!result)
        return Error{task.result.string() + ": " + result.error().message};
    Targets targets{std::move(*result), std::nullopt};
    if (task.mask.empty())
        return targets;
    Result<PngTarget> mask = PngTarget::create(task.mask, existing_, surroundings_.out);
    if (!mask)
        return Error{task.mask.string() + ": " + mask.error().message};
    targets.mask.emplace(std::move(*mask));
    return targets;
}

/// Both files are whole before either takes its name.
Result<void> CutRun::write(const CutPicture& cut, Targets& targets) {
    const auto pixels = subview(cut.result->bestRepresentation()->view(), cut.box);
    if (Result<void> written = targets.result.write(encoder_, pixels); !written)
        return written;
    if (targets.mask) {
        const Result<Bitmap> kept = keptMask(cut.mask.view());
        if (!kept)
            return kept.error();
        if (Result<void> written = targets.mask->write(encoder_, kept->view()); !written)
            return written;
        if (Result<void> committed = targets.mask->commit(); !committed)
            return committed;
    }
    return targets.result.commit();
}

Result<Bitmap> readMask(const std::string& name, std::istream& in, Workers& workers) {
    const PictureFileDecoder decoder(workers);
    const Result<PictureInput> input = PictureInput::read(name, in, decoder);
    if (!input)
        return input.error();
    const Result<codecs::PictureFacts> facts = decoder.facts(input->bytes());
    if (!facts)
        return facts.error();
    const Result<OpenedPicture> opened = openPicture(input->bytes(), decoder, workers);
    if (!opened)
        return opened.error();
    if (!opened->notice.empty())
        return Error{opened->notice};
    return maskFrom(opened->picture->bestRepresentation()->view(),
                    facts->hasAlpha ? AlphaRoom::some : AlphaRoom::none);
}

Result<StrokeScript> readScript(const std::string& name, std::istream& in) {
    if (name == kStandardStream)
        return StrokeScript::read(in);
    const Result<files::FileBytes> file = files::readRegularFile(name, kMostScriptBytes);
    if (!file)
        return file.error();
    const auto bytes = file->view();
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    return StrokeScript::read(lines);
}

Result<CutRecipe> recipeOf(const CutOrder& order, Surroundings& surroundings, Workers& workers) {
    CutRecipe recipe{nullptr, {}, order.background, order.crop};
    if (order.mask) {
        Result<Bitmap> mask = readMask(*order.mask, surroundings.in, workers);
        if (!mask)
            return Error{"the mask " + *order.mask + " cannot be used: " + mask.error().message};
        recipe.mask = std::make_shared<const Bitmap>(std::move(*mask));
    }
    if (order.strokes) {
        Result<StrokeScript> script = readScript(*order.strokes, surroundings.in);
        if (!script)
            return Error{"the script " + *order.strokes + " cannot be used: " + script.error().message};
        recipe.strokes = std::move(*script);
    }
    return recipe;
}

Result<void> makeOutFolder(const CutOrder& order) {
    std::error_code refused;
    if (order.outFolder)
        std::filesystem::create_directories(*order.outFolder, refused);
    if (refused)
        return Error{"the folder " + order.outFolder->string() + " cannot be made: " + refused.message()};
    return {};
}

int badUsage(Surroundings& surroundings, const Error& error) {
    surroundings.err << "trimora cut: " << error.message << "; --help tells more" << std::endl;
    return kBadUsage;
}

/// All threads work on pictures where there are enough of them, and within one where there are not.
int cutAll(const CutOrder& order, const std::vector<CutTask>& tasks, Surroundings& surroundings) {
    const int width = order.jobs > 0 ? order.jobs : surroundings.cores;
    const int atOnce = std::min(width, static_cast<int>(tasks.size()));
    const std::unique_ptr<Workers> jobs = surroundings.makeWorkers(atOnce);
    const std::unique_ptr<Workers> within = surroundings.makeWorkers(width / atOnce);
    Result<CutRecipe> recipe = recipeOf(order, surroundings, *within);
    if (!recipe)
        return badUsage(surroundings, recipe.error());
    if (Result<void> made = makeOutFolder(order); !made)
        return badUsage(surroundings, made.error());

    CutRun run(order, std::move(*recipe), surroundings, *within);
    const auto form = order.json ? CutReport::Form::jsonToo : CutReport::Form::forPeople;
    CutReport report(surroundings, form, tasks.size());
    jobs->run(static_cast<int>(tasks.size()), [&](int index) {
        const CutTask& task = tasks[static_cast<std::size_t>(index)];
        report.tell(task, run.run(task));
    });
    report.sumUp();
    return report.allWell() ? kAllWell : kSomeFailed;
}

}  // namespace

int cut(std::span<const char* const> words, Surroundings& surroundings) {
    const Result<CutOrder> order = CutOrder::parse(words);
    if (!order)
        return badUsage(surroundings, order.error());
    if (order->help) {
        surroundings.out << CutOrder::helpPage() << std::flush;
        return kAllWell;
    }
    const Result<std::vector<CutTask>> tasks = planOf(*order);
    if (!tasks)
        return badUsage(surroundings, tasks.error());
    return cutAll(*order, *tasks, surroundings);
}

}  // namespace trimora::batch
