#include "tools/interlang/file_access.h"

#include <chrono>
#include <filesystem>
#include <system_error>

#include "foundation/path/path.h"
#include "foundation/stream/file_stream.h"
#include "foundation/text/number.h"
#include "platform/file.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kNameLimit = 10000;

bool write(platform::FileHandle& file, const std::string& bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        std::uint32_t written = 0;
        const auto rest = static_cast<std::uint32_t>(bytes.size() - at);
        if (platform::writeFile(file, bytes.data() + at, rest, written) != platform::kSuccess || written == 0)
            return false;
        at += written;
    }
    return true;
}

// Writes to what is there already.
bool writeThrough(const std::u16string& path, const std::string& bytes) {
    platform::FileHandle file;
    return platform::createFile(path, platform::kGenericWrite, platform::kFileShareRead,
                                platform::kOpenExisting, platform::kFileAttributeNormal,
                                file) == platform::kSuccess &&
           write(file, bytes);
}

bool overwrite(const std::u16string& path, const std::string& bytes) {
    platform::FileHandle file;
    return platform::createFile(path, platform::kGenericWrite, platform::kFileShareRead,
                                platform::kTruncateExisting, platform::kFileAttributeNormal,
                                file) == platform::kSuccess &&
           write(file, bytes) && platform::flushFileBuffers(file) == platform::kSuccess;
}

// A file of a name that no other has.
std::u16string createBeside(const std::u16string& path, platform::FileHandle& file) {
    for (unsigned i = 0; i < kNameLimit; ++i) {
        std::u16string name = path + u'.' + owlkit::formatNumber<char16_t>(i) + u".new";
        if (platform::createFile(name, platform::kGenericWrite, 0, platform::kCreateNew,
                                 platform::kFileAttributeNormal, file) == platform::kSuccess)
            return name;
        if (owlkit::pathType(name) == owlkit::PathType::Unreadable)
            break;
    }
    return {};
}

bool writeBeside(const std::u16string& path, const std::string& bytes, bool exists) {
    platform::FileHandle file;
    const std::u16string fresh = createBeside(path, file);
    if (fresh.empty())
        return false;
    const bool written = write(file, bytes) && platform::flushFileBuffers(file) == platform::kSuccess;
    file.reset();
    bool done = written;
    if (written && exists) {
        done = replaceFile(path, fresh);
    } else if (written) {
        std::error_code error;
        fs::rename(fresh, path, error);
        done = !error;
    }
    if (!done)
        static_cast<void>(platform::deleteFile(fresh));
    return done || (written && exists && overwrite(path, bytes));
}

}  // namespace

std::string readBytes(const std::u16string& path) {
    owlkit::FileStream file;
    if (!file.open(path, owlkit::OpenMode::Read))
        throw Failure("cannot open " + utf8(path));
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    if (!bytes.empty() && file.read(bytes.data(), bytes.size()) != bytes.size())
        throw Failure("cannot read " + utf8(path));
    return bytes;
}

void writeBytes(const std::u16string& path, const std::string& bytes) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::none)  // such as links that lead in a circle
        throw Failure("cannot write " + utf8(path));
    const bool exists = fs::exists(status);
    // A link to a pipe, such as /dev/stdout, leads to no name that could be written to instead of it.
    const bool special = exists && !fs::is_regular_file(status);
    const std::u16string name = special ? path : withoutLinks(path);
    if (exists && (platform::fileAttributes(name) & platform::kFileAttributeReadOnly) != 0)
        throw Failure("cannot write " + utf8(path) + ": it is read-only");
    if (special ? !writeThrough(name, bytes) : !writeBeside(name, bytes, exists))
        throw Failure("cannot write " + utf8(path));
}

long long changeTime(const std::u16string& path) {
    using namespace std::chrono;
    std::error_code error;
    const auto time = fs::last_write_time(path, error);
    return error ? 0 : floor<seconds>(file_clock::to_sys(time)).time_since_epoch().count();
}

}  // namespace translators
