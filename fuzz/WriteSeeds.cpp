#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Seeds.h"
#include "Targets.h"

// Writes the seeds of every target below the folder, one folder a target.
int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    for (const auto& target : trimora::fuzz::kTargets) {
        const std::filesystem::path folder = std::filesystem::path(arguments[1]) / target.name;
        std::filesystem::create_directories(folder);
        int number = 0;
        for (const auto& seed : trimora::fuzz::seedsOf(target.name)) {
            std::ofstream file(folder / ("seed-" + std::to_string(number++)), std::ios::binary);
            file.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
            if (!file.flush())
                return 1;
        }
    }
    return 0;
}
