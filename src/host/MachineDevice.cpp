#include "host/MachineDevice.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <utility>

#include "files/LateLibrary.h"

namespace trimora::host {
namespace {

using Digest = std::array<unsigned char, EVP_MAX_MD_SIZE>;

/// Nothing where the library that reckons it is not there. It is asked for once in a session.
std::optional<Digest> hmacSha256(const std::string& key, const std::string& text) {
    const auto library = files::LateLibrary::open("libcrypto.so.3");
    decltype(&::HMAC) hmac = nullptr;
    decltype(&::EVP_sha256) sha256 = nullptr;
    if (!library || !library->find("HMAC", hmac) || !library->find("EVP_sha256", sha256))
        return std::nullopt;
    Digest digest = {};
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    if (hmac(sha256(), key.data(), static_cast<int>(key.size()), bytes, text.size(), digest.data(),
             nullptr) == nullptr)
        return std::nullopt;
    return digest;
}

std::string uuidText(const Digest& digest) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += kDigits[digest.at(i) >> 4U];
        text += kDigits[digest.at(i) & 0xfU];
    }
    return text;
}

std::string unquoted(std::string text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// The part of a time-zone file's path that is the zone's name.
std::string zoneName(const std::string& path) {
    constexpr std::string_view kFolder = "zoneinfo/";
    const auto at = path.find(kFolder);
    return at == std::string::npos ? path : path.substr(at + kFolder.size());
}

}  // namespace

MachineDevice::MachineDevice(std::string application, std::string userAgent, std::filesystem::path root)
    : application_(std::move(application)), userAgent_(std::move(userAgent)), root_(std::move(root)) {}

std::optional<std::string> MachineDevice::firstLine(const char* file) const {
    std::ifstream stream(root_ / file);
    std::string line;
    if (!std::getline(stream, line) || line.empty())
        return std::nullopt;
    return line;
}

std::optional<std::string> MachineDevice::uniqueIdentifier() const {
    const auto machine = firstLine("etc/machine-id");
    if (!machine)
        return std::nullopt;
    const auto digest = hmacSha256(*machine, application_);
    return digest ? std::optional(uuidText(*digest)) : std::nullopt;
}

std::optional<std::string> MachineDevice::hardwareModel() const {
    return firstLine("sys/devices/virtual/dmi/id/product_name");
}

std::optional<std::string> MachineDevice::operatingSystemVersion() const {
    constexpr std::string_view kKey = "PRETTY_NAME=";
    std::ifstream stream(root_ / "etc/os-release");
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(kKey))
            return unquoted(line.substr(kKey.size()));
    }
    return std::nullopt;
}

std::string MachineDevice::localeIdentifier() const {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string value = environment(variable);
        if (value.empty())
            continue;
        const std::string name = value.substr(0, value.find_first_of(".@"));
        return name == "C" || name == "POSIX" ? "en_US" : name;
    }
    return "en_US";
}

analytics::TimeZone MachineDevice::timeZone() const {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    ::localtime_r(&now, &local);
    const auto offset = static_cast<int>(local.tm_gmtoff);
    if (std::string zone = environment("TZ"); !zone.empty())
        return {zoneName(zone.front() == ':' ? zone.substr(1) : zone), offset};
    std::error_code failure;
    const auto link = std::filesystem::read_symlink(root_ / "etc/localtime", failure);
    return {failure ? "UTC" : zoneName(link.string()), offset};
}

}  // namespace trimora::host
