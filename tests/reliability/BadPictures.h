#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "codecs/PictureFileDecoder.h"
#include "codecs/SampleFilesForTests.h"

/// Picture files that are not what they should be, made and not stored.
namespace trimora::reliability {

using codecs::samples::Buffer;

struct NamedFile {
    std::string name;
    Buffer bytes;
};

/// Fifteen sound files: every format in the kinds that are read by code of their own.
[[nodiscard]] const std::vector<NamedFile>& soundFiles();

/// The same, as small as they are read by all of that code: what fuzzers begin with.
[[nodiscard]] std::vector<NamedFile> smallSoundFiles();

/// Each sound file broken in ten ways, "png-16-interlaced.cut-at-half" and so on.
[[nodiscard]] std::vector<NamedFile> brokenFiles();

/// A sound file with one to eight random changes. In half of the PNG files the checksums are put right
/// afterwards, so that what lies behind them is reached.
[[nodiscard]] Buffer mutant(std::mt19937_64& random);

/// Makes the checksum of every whole chunk of a PNG file what it should be. Whether one was not.
bool putChecksumsRight(Buffer& png);

/// Twelve small files whose metadata would cost much time or memory if anybody read it all.
[[nodiscard]] std::vector<NamedFile> metadataBombs();

/// A small file of each format whose head speaks of `side` x `side` pixels, as far as the format can.
[[nodiscard]] std::vector<NamedFile> filesOfSize(std::uint32_t side);

/// How many pixels the tests admit.
inline constexpr std::uint64_t kAdmittedPixels = 4'000'000;

/// What is wrong with an outcome; empty where it is a proper picture, or no picture and one message.
[[nodiscard]] std::string faultOf(const foundation::Result<cutengine::DecodedPicture>& outcome);

}  // namespace trimora::reliability
