#pragma once

#include <filesystem>
#include <optional>

#include "codecs/Bytes.h"
#include "codecs/PictureFacts.h"
#include "codecs/PixelBudget.h"
#include "cutengine/PictureDecoder.h"
#include "files/RegularFile.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::codecs {

/// Reads JPEG, PNG, TIFF and GIF files: the gate through which every picture comes into the program.
///
/// What passes: a regular file, small enough, whose first bytes are those of a format (its name does not
/// matter); it is then read as that format and no other. Everything else returns an error whose message
/// says why in one clause, not naming the file. Any thread, several at once.
class PictureFileDecoder final : public cutengine::PictureDecoder {
 public:
    /// Reads with the budget that the free memory gives at each call.
    explicit PictureFileDecoder(foundation::Workers& workers) : workers_(workers) {}

    /// Reads with a fixed budget.
    PictureFileDecoder(foundation::Workers& workers, PixelBudget budget)
        : workers_(workers), fixedBudget_(budget) {}

    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decode(
        const std::filesystem::path& file) override;

    /// The bytes of a file that passes: decode() is this and then decodeBytes().
    [[nodiscard]] foundation::Result<files::FileBytes> readFile(const std::filesystem::path& file) const;

    /// As decode(), of a file's bytes.
    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decodeBytes(Bytes file) const;

    /// What the file says of its picture, without decoding it.
    [[nodiscard]] foundation::Result<PictureFacts> facts(Bytes file) const;

    /// No file of a picture within the budget has more bytes.
    [[nodiscard]] std::uint64_t mostFileBytes() const;

 private:
    [[nodiscard]] PixelBudget budget() const;

    foundation::Workers& workers_;
    std::optional<PixelBudget> fixedBudget_;
};

}  // namespace trimora::codecs
