#include "PicturePool.h"

#include <sys/stat.h>

#include <fstream>
#include <string>
#include <utility>

#include "BadPictures.h"

namespace trimora::reliability {

namespace fs = std::filesystem;
using codecs::samples::jpeg;
using codecs::samples::png;
using codecs::samples::quarters;

PicturePool::PicturePool(fs::path folder) : folder_(std::move(folder)) {
    fs::create_directories(folder_);
    put(sound_, "cat.png", png(quarters(300, 200).view()));
    put(sound_, "tall.jpg", jpeg(quarters(400, 900).view()));
    put(sound_, "wide.png", png(quarters(3000, 1000).view()));
    put(sound_, "dot.png", png(quarters(1, 1).view()));
    put(sound_, "line.png", png(quarters(1, 2500).view()));
    for (const NamedFile& file : soundFiles())
        put(sound_, file.name.c_str(), file.bytes);
    for (const NamedFile& file : brokenFiles())
        put(bad_, file.name.c_str(), file.bytes);
    put(bad_, "empty.png", {});
    const std::string words = "no picture at all";
    put(bad_, "words.png", {words.begin(), words.end()});
    for (const char* const name : {"folder.png", "pipe.png", "circle.png", "nothing.png"})
        bad_.push_back(folder_ / name);
    fs::create_directory(folder_ / "folder.png");
    ::mkfifo((folder_ / "pipe.png").c_str(), S_IRUSR | S_IWUSR);
    fs::create_symlink("circle.png", folder_ / "circle.png");
    bad_.emplace_back("/dev/zero");
}

void PicturePool::put(std::vector<fs::path>& list, const char* name, const std::vector<std::uint8_t>& bytes) {
    list.push_back(folder_ / name);
    std::ofstream file(list.back(), std::ios::binary);
    for (const std::uint8_t byte : bytes)
        file.put(static_cast<char>(byte));
}

}  // namespace trimora::reliability
