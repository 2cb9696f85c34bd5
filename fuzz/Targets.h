#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The readers of bytes from outside, each as one function that takes any bytes.
///
/// clang's libFuzzer drives them (Fuzzer.cpp), and a test of every run feeds them their seeds, what was found
/// before, and changed copies of both (tests/reliability/FuzzReplayTest.cpp). A reader that breaks its
/// promise ends the process by abort(). Returns -1 for bytes that are none of the reader's business and need
/// not be kept, else 0.
namespace trimora::fuzz {

int readPng(const std::uint8_t* data, std::size_t size);
int readJpeg(const std::uint8_t* data, std::size_t size);
int readTiff(const std::uint8_t* data, std::size_t size);
int readGif(const std::uint8_t* data, std::size_t size);

/// A file of the undo history: a mask that is written again as the same mask, or a reason.
int readSnapshot(const std::uint8_t* data, std::size_t size);

/// A line of an edit script.
int readEditScript(const std::uint8_t* data, std::size_t size);

/// An event: data from a program's bridge on its way into a body, and a row of the store on its way out of
/// it.
int readEvent(const std::uint8_t* data, std::size_t size);

struct Target {
    const char* name;
    int (*read)(const std::uint8_t* data, std::size_t size);
};
inline constexpr Target kTargets[] = {{"png", readPng},           {"jpeg", readJpeg},
                                      {"tiff", readTiff},         {"gif", readGif},
                                      {"snapshot", readSnapshot}, {"edit_script", readEditScript},
                                      {"event", readEvent}};

}  // namespace trimora::fuzz
