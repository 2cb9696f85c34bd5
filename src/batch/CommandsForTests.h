#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "batch/CutCommand.h"
#include "batch/InfoCommand.h"
#include "batch/Surroundings.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PngEncoder.h"
#include "foundation/ThreadQueues.h"
#include "testing/TemporaryFolder.h"

namespace trimora::batch {

/// A folder of pictures and a terminal made of strings.
class CommandTest : public ::testing::Test {
 protected:
    using Line = nlohmann::ordered_json;

    /// Runs a command with these words; what it said is in `out` and `err` then.
    int run(int (*command)(std::span<const char* const>, Surroundings&),
            const std::vector<std::string>& words) {
        std::vector<const char*> pointers;
        for (const std::string& word : words)
            pointers.push_back(word.c_str());
        std::istringstream in(input);
        std::ostringstream outStream;
        std::ostringstream errStream;
        Surroundings surroundings{in, outStream, errStream, cores, [](int width) {
                                      return std::make_unique<foundation::ThreadWorkers>(width);
                                  }};
        const int status = command(pointers, surroundings);
        out = outStream.str();
        err = errStream.str();
        return status;
    }
    int runCut(const std::vector<std::string>& words) { return run(&cut, words); }
    int runInfo(const std::vector<std::string>& words) { return run(&info, words); }

    /// A path in the folder.
    [[nodiscard]] std::string at(const std::string& name) const { return (folder.path() / name).string(); }

    static std::string png(const foundation::Bitmap& bitmap) {
        foundation::InlineWorkers here;
        std::string bytes;
        (void)codecs::PngEncoder(here).encodePng(bitmap.view(), [&](auto piece) -> foundation::Result<void> {
            bytes.append(piece.begin(), piece.end());
            return {};
        });
        return bytes;
    }

    std::string put(const std::string& name, const std::string& bytes) const {
        std::ofstream(at(name), std::ios::binary) << bytes;
        return at(name);
    }
    std::string putPicture(const std::string& name, const foundation::Bitmap& bitmap) const {
        return put(name, png(bitmap));
    }
    /// A picture of one colour.
    std::string putGrey(const std::string& name, int width = 40, int height = 30) const {
        return putPicture(name, filled(width, height, {100, 100, 100, 255}));
    }
    /// A grey mask: white left of `edge`, black from there.
    std::string putMask(const std::string& name, int width, int height, int edge) const {
        foundation::Bitmap mask = filled(width, height, {0, 0, 0, 255});
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < edge; ++x)
                mask.setPixel(x, y, {255, 255, 255, 255});
        }
        mask.setPixel(width - 1, height - 1, {1, 1, 1, 255});  // not black all over, even without white
        return putPicture(name, mask);
    }
    static foundation::Bitmap filled(int width, int height, foundation::Pixel pixel) {
        return foundation::Bitmap::createFilled(width, height, pixel).value();
    }

    static std::string contents(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// The picture in these bytes, premultiplied.
    static foundation::Bitmap decoded(const std::string& bytes) {
        foundation::InlineWorkers here;
        auto picture = codecs::PictureFileDecoder(here, codecs::PixelBudget(1'000'000))
                           .decodeBytes({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        EXPECT_TRUE(picture) << picture.error().message;
        return picture ? std::move(picture->representations.front()) : foundation::Bitmap();
    }
    [[nodiscard]] foundation::Bitmap picture(const std::string& name) const {
        return decoded(contents(at(name)));
    }

    [[nodiscard]] std::vector<Line> jsonLines() const {
        std::vector<Line> lines;
        std::istringstream stream(out);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(Line::parse(line));
        return lines;
    }

    testing::TemporaryFolder folder;
    int cores = 2;
    std::string input;  ///< standard input
    std::string out;
    std::string err;
};

}  // namespace trimora::batch
