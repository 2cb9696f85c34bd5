#include "analytics/public/CrashCapture.h"

#include <cxxabi.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/event/Dictionary.h"
#include "analytics/info/UserDefaults.h"
#include "analytics/public/CrashRecord.h"
#include "analytics/public/FatalSignals.h"
#include "files/FileDescriptor.h"
#include "files/FolderEntries.h"
#include "files/RegularFile.h"

namespace trimora::analytics {
namespace {

constexpr const char* kCrashLogKey = "kTLCrashLogKey";
constexpr std::size_t kLargestRecord = 1024 * 1024;
// A program that crashes at every start beside a store that takes nothing must not fill the user defaults.
constexpr std::size_t kMostWaiting = 32;
constexpr unsigned kOwnerOnly = 0600;

struct Installed {
    std::filesystem::path path;
    files::FileDescriptor file;
    std::terminate_handler terminateBefore = nullptr;
};
std::unique_ptr<Installed> current;

std::string demangled(const char* name) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> plain(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                       std::free);
    return plain ? plain.get() : name;
}

std::string describeException() {
    const std::exception_ptr exception = std::current_exception();
    if (!exception)
        return "terminate called without an exception";
    std::string type = "unknown exception";
    if (const std::type_info* const info = abi::__cxa_current_exception_type())
        type = demangled(info->name());
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& known) {
        return type + ": " + known.what();
    } catch (...) {
        return type;
    }
}

bool isPartOfName(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-' || c == '.';
}

/// With a mark in place of every path, up to the end of its line, as nobody can tell where a path ends, and
/// of the names of the person and the machine.
std::string withoutNames(std::string text) {
    constexpr std::string_view kMark = "...";
    for (std::size_t slash = text.find('/'); slash != std::string::npos; slash = text.find('/', slash)) {
        std::size_t begin = slash;
        while (begin > 0 && isPartOfName(text[begin - 1]))
            --begin;
        text.replace(begin, std::min(text.find('\n', slash), text.size()) - begin, kMark);
        slash = begin + kMark.size();
    }
    char host[256] = {};
    ::gethostname(host, sizeof host - 1);
    for (const char* const name : std::array<const char*, 3>{::getenv("USER"), ::getenv("LOGNAME"), host}) {
        const std::string_view hidden = name != nullptr ? name : "";
        for (std::size_t at = text.find(hidden); !hidden.empty() && at != std::string::npos;
             at = text.find(hidden, at)) {
            const bool isWhole =
                (at == 0 || !isPartOfName(text[at - 1])) &&
                (at + hidden.size() == text.size() || !isPartOfName(text[at + hidden.size()]));
            if (isWhole)
                text.replace(at, hidden.size(), kMark);
            at += isWhole ? kMark.size() : hidden.size();
        }
    }
    return text;
}

/// Without the folders in which the program lies: they may bear a person's name.
std::string_view withoutFolders(std::string_view symbol) {
    const std::size_t slash = symbol.substr(0, symbol.find('(')).rfind('/');
    return slash == std::string_view::npos ? symbol : symbol.substr(slash + 1);
}

std::string callStackSymbols() {
    std::array<void*, 64> frames = {};
    const int count = ::backtrace(frames.data(), static_cast<int>(frames.size()));
    const std::unique_ptr<char*, void (*)(void*)> symbols(::backtrace_symbols(frames.data(), count),
                                                          std::free);
    std::string text;
    for (int i = 0; symbols && i < count; ++i)
        text.append("\n").append(std::to_string(i)).append(" ").append(withoutFolders(symbols.get()[i]));
    return text;
}

/// Those that wait longest are kept where there are too many: what came first may have led to the rest.
void addTo(CrashCapture::Crashes& waiting, const std::string& session, const std::string& text) {
    if (waiting.size() < kMostWaiting)
        waiting.emplace(session, text);
}

/// The abort at its end leaves a record of its own, which the next start takes only where this one could not
/// be stored: memory may be missing or in disorder, and a lock that is needed may be held for ever.
[[noreturn]] void handleUncaughtException() {
    FatalSignals::endWithin(1);
    const std::terminate_handler before = current ? current->terminateBefore : nullptr;
    CrashCapture::Crashes crashes = CrashCapture::pendingCrashes();
    addTo(crashes, FatalSignals::session(), withoutNames(describeException()) + callStackSymbols());
    CrashCapture::setPendingCrashes(crashes);
    if (before != nullptr)
        before();
    std::abort();
}

/// The file is locked as long as its process lives.
bool isLeftBehind(const files::FileDescriptor& file) {
    return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

void collect(const std::filesystem::path& path, CrashCapture::Crashes& crashes,
             std::vector<std::filesystem::path>& collected) {
    const auto file = files::openRegularFileAt(AT_FDCWD, path.c_str(), files::Links::refuse);
    if (!file || !isLeftBehind(*file))
        return;
    const auto bytes = files::readAll(*file, kLargestRecord);
    if (!bytes && bytes.error().code != EFBIG)
        return;  // the next start may be able to
    collected.push_back(path);
    if (bytes) {
        const auto view = bytes->view();
        const std::string written(view.begin(), view.end());
        if (const auto record = CrashRecord::parse(written))
            addTo(crashes, record->session, record->text);
    }
}

void collectLeftBehind(const std::filesystem::path& folder) {
    CrashCapture::Crashes crashes = CrashCapture::pendingCrashes();
    const std::size_t known = crashes.size();
    std::vector<std::filesystem::path> collected;
    // Not by the standard library's iterators, which end the program where there is no memory.
    const files::FileDescriptor opened = files::openAt(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY);
    const auto names = files::folderEntries(opened.number());
    if (!names)
        return;
    for (const std::string& name : *names) {
        if (name.starts_with("telemetrix-") && name.ends_with(".crash"))
            collect(folder / name, crashes, collected);
    }
    if (crashes.size() > known)
        CrashCapture::setPendingCrashes(crashes);
    for (const auto& path : collected)
        ::unlink(path.c_str());
}

}  // namespace

void CrashCapture::install() {
    if (current)
        return;
    current = std::make_unique<Installed>();
    FatalSignals::handle();
    current->terminateBefore = std::set_terminate(handleUncaughtException);
}

void CrashCapture::prepareRecord(const std::filesystem::path& folder) {
    collectLeftBehind(folder);
    if (current->file)
        return;
    current->path = folder / formatted("telemetrix-%d.crash", static_cast<int>(::getpid()));
    current->file =
        files::openAt(AT_FDCWD, current->path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW, kOwnerOnly);
    ::flock(current->file.number(), LOCK_EX | LOCK_NB);
    FatalSignals::writeTo(current->file.number());
}

void CrashCapture::uninstall() {
    if (!current)
        return;
    std::set_terminate(current->terminateBefore);
    FatalSignals::release();
    if (current->file)
        ::unlink(current->path.c_str());
    current.reset();
}

void CrashCapture::setSession(const std::string& session) {
    FatalSignals::setSession(session);
}

CrashCapture::Crashes CrashCapture::pendingCrashes() {
    const auto text = wiring().userDefaults.objectForKey(kCrashLogKey);
    Crashes crashes;
    const auto entries = Dictionary::parse(text.value_or("{}"));
    if (!entries)
        return crashes;
    entries->forEach([&](const std::string& session, const Dictionary& crash) {
        if (crash.text() != nullptr)
            crashes.emplace(session, *crash.text());
    });
    return crashes;
}

void CrashCapture::setPendingCrashes(const Crashes& crashes) {
    // What a dying process says need not be UTF-8.
    Dictionary entries = Dictionary::object();
    for (const auto& [session, text] : crashes)
        entries.set(session, text);
    if (crashes.empty())
        wiring().userDefaults.removeObjectForKey(kCrashLogKey);
    else
        wiring().userDefaults.setObject(kCrashLogKey, entries.jsonOrMarks());
    wiring().userDefaults.synchronize();
}

}  // namespace trimora::analytics
