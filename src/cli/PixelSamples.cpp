#include "cli/PixelSamples.h"

#include <QImage>
#include <QPixmap>
#include <algorithm>
#include <cmath>

#include "editor/CutViewWidget.h"
#include "files/AtomicFile.h"

namespace trimora {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Error;
using foundation::Result;

namespace {

using Of = script::SampleStep::Of;
using What = script::WriteStep::What;

/// A picture, kept alive by whoever made it.
struct Shown {
    BitmapView pixels;
    std::shared_ptr<const void> owner;
};

Result<Shown> owned(Bitmap bitmap, const char* whenNone) {
    if (bitmap.isEmpty())
        return Error{whenNone};
    auto kept = std::make_shared<const Bitmap>(std::move(bitmap));
    return Shown{kept->view(), kept};
}

Result<Shown> ofPicture(const cutengine::PicturePtr& picture, const char* whenNone) {
    if (picture == nullptr || !picture->isValid())
        return Error{whenNone};
    auto kept = picture->bestRepresentation();
    return Shown{kept->view(), kept};
}

Result<Shown> ofImage(const QImage& image, const char* whenNone) {
    if (image.isNull())
        return Error{whenNone};
    auto kept = std::make_shared<const QImage>(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    return Shown{
        BitmapView(kept->constBits(), kept->width(), kept->height(),
                   static_cast<std::size_t>(kept->bytesPerLine()), foundation::AlphaMode::premultiplied),
        kept};
}

/// What the view shows at this moment of the clock, in device pixels.
Result<Shown> ofView(ScriptedProgram& program) {
    const double scale = program.editor().outlets().viCut->scaleFactor();
    const foundation::Size size = program.cutView().viewSize();
    auto frame =
        Bitmap::create(static_cast<int>(std::lround(size.width * scale)),
                       static_cast<int>(std::lround(size.height * scale)), foundation::AlphaMode::opaque);
    if (!frame)
        return frame.error();
    program.cutView().drawRect(frame->view(), frame->view().bounds());
    return owned(std::move(*frame), "");
}

Result<Shown> ofWindow(ScriptedProgram& program) {
    app::MainWindow& window = program.shell().window();
    const bool painted = window.updatesEnabled();
    window.setUpdatesEnabled(true);
    const QImage image = window.grab().toImage();
    window.setUpdatesEnabled(painted);
    return ofImage(image, "there is no window");
}

Result<Shown> ofCursor(ScriptedProgram& program) {
    if (program.cutView().cursorKind() != cutengine::Cursor::Kind::brush)
        return Error{"the pointer is not the brush's but one of the desktop's"};
    return ofImage(program.editor().outlets().viCut->cursor().pixmap().toImage(), "there is no pointer");
}

Result<Shown> picture(ScriptedProgram& program, Of of) {
    switch (of) {
        case Of::mask:
            return owned(program.cutView().copyMaskPlane(), "there is no mask");
        case Of::color:
            return owned(program.cutView().copyColorPlane(), "there is no colour plane");
        case Of::result:
            return ofPicture(program.cutView().getResult(), "there is no picture");
        case Of::picture:
            return ofPicture(program.cutView().image(), "there is no picture");
        case Of::view:
            return ofView(program);
    }
    return Error{"there is no picture"};
}

Result<Shown> picture(ScriptedProgram& program, What what) {
    switch (what) {
        case What::result:
            return picture(program, Of::result);
        case What::mask:
            return picture(program, Of::mask);
        case What::view:
            return picture(program, Of::view);
        case What::window:
            return ofWindow(program);
        case What::cursor:
            return ofCursor(program);
    }
    return Error{"there is no picture"};
}

Json straightPixel(BitmapView pixels, int x, int y) {
    const std::uint8_t* const at = pixels.row(y) + std::ptrdiff_t{4} * x;
    const int alpha = pixels.alphaMode == foundation::AlphaMode::opaque ? 255 : at[3];
    const auto component = [&](int value) {
        if (pixels.alphaMode != foundation::AlphaMode::premultiplied || alpha == 255)
            return value;
        return alpha == 0 ? 0 : std::min(255, (value * 255 + alpha / 2) / alpha);
    };
    return Json::array({component(at[2]), component(at[1]), component(at[0]), alpha});
}

}  // namespace

Result<Json> sample(ScriptedProgram& program, const script::SampleStep& step) {
    const auto shown = picture(program, step.of);
    if (!shown)
        return shown.error();
    const BitmapView pixels = shown->pixels;
    Json list = Json::array();
    for (const script::Point place : step.at) {
        if (place.x < 0 || place.y < 0 || place.x >= pixels.width || place.y >= pixels.height)
            return Error{"a place lies outside of " + std::to_string(pixels.width) + " x " +
                         std::to_string(pixels.height) + " pixels"};
        list.push_back(straightPixel(pixels, static_cast<int>(place.x), static_cast<int>(place.y)));
    }
    return list;
}

Result<void> write(ScriptedProgram& program, const script::WriteStep& step) {
    const auto shown = picture(program, step.what);
    if (!shown)
        return shown.error();
    auto file = files::AtomicFile::create(std::filesystem::absolute(step.to));
    Result<void> done = file ? Result<void>() : file.error();
    if (done)
        done = program.wiring().encoder().encodePng(shown->pixels,
                                                    [&file](auto bytes) { return file->write(bytes); });
    if (done)
        done = file->commit();
    if (!done)
        return Error{step.to + " cannot be written: " + done.error().message};
    return done;
}

}  // namespace trimora
