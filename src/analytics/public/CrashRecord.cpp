#include "analytics/public/CrashRecord.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <vector>

#include "analytics/Diagnostics.h"

namespace trimora::analytics {
namespace {

/// One line of the memory map: addresses from `begin` to `end` show `file` from `offset` on.
struct Mapping {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::uint64_t offset = 0;
    std::string file;
};

std::optional<Mapping> parseMapping(const std::string& line) {
    std::istringstream words(line);
    Mapping mapping;
    char dash = 0;
    std::string permissions, device, inode;
    words >> std::hex >> mapping.begin >> dash >> mapping.end >> permissions >> mapping.offset >> device >>
        inode;
    if (!words || dash != '-')
        return std::nullopt;
    std::getline(words >> std::ws, mapping.file);
    return mapping;
}

std::string place(std::uint64_t address, const std::vector<Mapping>& mappings) {
    for (const Mapping& mapping : mappings) {
        if (address >= mapping.begin && address < mapping.end && !mapping.file.empty()) {
            const std::string name = mapping.file.substr(mapping.file.rfind('/') + 1);
            return formatted("%s + 0x%llx", name.c_str(),
                             static_cast<unsigned long long>(address - mapping.begin + mapping.offset));
        }
    }
    return formatted("0x%llx", static_cast<unsigned long long>(address));
}

std::string signalName(int number) {
    const char* const abbreviation = ::sigabbrev_np(number);
    return abbreviation != nullptr ? std::string("SIG") + abbreviation : "signal " + std::to_string(number);
}

}  // namespace

std::optional<CrashRecord> CrashRecord::parse(std::string_view written) {
    std::istringstream lines{std::string(written)};
    CrashRecord record;
    std::string word, value, line;
    int signal = 0;
    std::string code, address;
    std::vector<std::uint64_t> frames;
    while (lines >> word && word != "maps" && lines >> value) {
        if (word == "session")
            record.session = value;
        else if (word == "signal")
            signal = std::atoi(value.c_str());
        else if (word == "code")
            code = value;
        else if (word == "address")
            address = value;
        else if (word == "frame")
            frames.push_back(std::strtoull(value.c_str(), nullptr, 16));
    }
    if (record.session.empty() || signal == 0)
        return std::nullopt;
    std::vector<Mapping> mappings;
    while (std::getline(lines, line)) {
        if (const auto mapping = parseMapping(line))
            mappings.push_back(*mapping);
    }
    record.text = signalName(signal) + " (code " + code + ", address " + address + ")";
    for (std::size_t i = 0; i < frames.size(); ++i)
        record.text += "\n" + std::to_string(i) + " " + place(frames[i], mappings);
    return record;
}

}  // namespace trimora::analytics
