#pragma once

#include "codecs/Bytes.h"
#include "codecs/PictureFacts.h"
#include "codecs/PixelBudget.h"
#include "cutengine/PictureDecoder.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::codecs {

inline constexpr const char* kCutShort = "the file is cut short; what could be read is shown";
inline constexpr const char* kDamaged = "the file is damaged; what could be read is shown";

/// Reads pictures of one format from bytes in memory.
///
/// The bytes may be anything: what they claim is checked against the budget before memory is taken for it,
/// and what no real picture has (thousands of scans, pages or comments) is passed over or ends the reading.
/// Any thread, several at once.
class FormatDecoder {
 public:
    /// The workers must outlive the decoder.
    FormatDecoder(PixelBudget budget, foundation::Workers& workers) : budget_(budget), workers_(workers) {}
    virtual ~FormatDecoder() = default;
    FormatDecoder(const FormatDecoder&) = delete;
    FormatDecoder& operator=(const FormatDecoder&) = delete;

    /// The bitmaps of the file, upright, in sRGB, premultiplied or opaque. A file of which only a part can
    /// be read gives that part and a notice (what is missing is transparent); one of which nothing can be
    /// read returns an error.
    [[nodiscard]] virtual foundation::Result<cutengine::DecodedPicture> decode(Bytes file) const = 0;

    /// What the file says of its picture; asks no budget. An error where not even that can be read.
    [[nodiscard]] virtual foundation::Result<PictureFacts> facts(Bytes file) const = 0;

 protected:
    [[nodiscard]] const PixelBudget& budget() const { return budget_; }
    [[nodiscard]] foundation::Workers& workers() const { return workers_; }

 private:
    PixelBudget budget_;
    foundation::Workers& workers_;
};

}  // namespace trimora::codecs
