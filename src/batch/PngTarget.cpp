#include "batch/PngTarget.h"

#include <span>
#include <utility>

#include "batch/Surroundings.h"

namespace trimora::batch {
namespace {

using foundation::Error;
using foundation::Result;

Error streamClosed() {
    return {"standard output cannot be written"};
}

}  // namespace

Result<PngTarget> PngTarget::create(const std::filesystem::path& name, files::Existing existing,
                                    std::ostream& out) {
    if (name == kStandardStream)
        return PngTarget(out);
    Result<files::AtomicFile> file = files::AtomicFile::create(name, existing);
    if (!file)
        return file.error();
    return PngTarget(out, std::move(*file));
}

Result<void> PngTarget::write(cutengine::PictureEncoder& encoder, foundation::BitmapView picture) {
    return encoder.encodePng(picture, [this](std::span<const std::uint8_t> bytes) -> Result<void> {
        if (file_)
            return file_->write(bytes);
        out_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return out_ ? Result<void>() : streamClosed();
    });
}

Result<void> PngTarget::commit() {
    if (file_)
        return file_->commit();
    return out_.flush() ? Result<void>() : streamClosed();
}

}  // namespace trimora::batch
