#include "host/IniUserDefaults.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <utility>

#include "files/AtomicFile.h"
#include "files/PrivateFolder.h"
#include "files/RegularFile.h"
#include "foundation/Log.h"

namespace trimora::host {
namespace {

constexpr const char* kHeading = "[Telemetrix]";
constexpr std::size_t kLargestFile = 4 * 1024 * 1024;

std::string escaped(std::string_view text) {
    std::string line;
    for (const char c : text) {
        if (c == '\n')
            line += "\\n";
        else if (c == '\r')
            line += "\\r";
        else if (c == '\\')
            line += "\\\\";
        else
            line += c;
    }
    return line;
}

std::string unescaped(std::string_view line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '\\' || i + 1 == line.size()) {
            text += line[i];
            continue;
        }
        const char c = line[++i];
        text += c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return text;
}

}  // namespace

IniUserDefaults::IniUserDefaults(std::filesystem::path file) : file_(std::move(file)), values_(read()) {}

std::optional<std::string> IniUserDefaults::objectForKey(std::string_view key) const {
    const std::scoped_lock lock(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void IniUserDefaults::setObject(std::string_view key, std::string_view value) {
    const std::scoped_lock lock(mutex_);
    values_[std::string(key)] = value;
    changes_[std::string(key)] = std::string(value);
}

void IniUserDefaults::removeObjectForKey(std::string_view key) {
    const std::scoped_lock lock(mutex_);
    values_.erase(std::string(key));
    changes_[std::string(key)] = std::nullopt;
}

void IniUserDefaults::synchronize() {
    const std::scoped_lock lock(mutex_);
    Values merged = read();
    for (const auto& [key, value] : changes_) {
        if (value)
            merged[key] = *value;
        else
            merged.erase(key);
    }
    if (!changes_.empty() && !write(merged))
        return;
    changes_.clear();
    values_ = std::move(merged);
}

IniUserDefaults::Values IniUserDefaults::read() const {
    Values values;
    const auto bytes = files::readRegularFile(file_, kLargestFile);
    if (!bytes)
        return values;
    const auto view = bytes->view();
    std::istringstream lines(std::string(view.begin(), view.end()));
    for (std::string line; std::getline(lines, line);) {
        const auto equals = line.find('=');
        if (equals != std::string::npos)
            values[line.substr(0, equals)] = unescaped(std::string_view(line).substr(equals + 1));
    }
    return values;
}

bool IniUserDefaults::write(const Values& values) const {
    std::string text = std::string(kHeading) + "\n";
    for (const auto& [key, value] : values)
        text += key + "=" + escaped(value) + "\n";
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    (void)files::makeFolder(file_.parent_path());  // what opens the file says what is wrong
    auto file = files::AtomicFile::create(file_);
    foundation::Result<void> written = file ? file->write(bytes) : file.error();
    if (written)
        written = file->commit();
    if (!written)
        foundation::log::warning("The settings file %s was not written: %s", file_.c_str(),
                                 written.error().message.c_str());
    return written.ok();
}

}  // namespace trimora::host
