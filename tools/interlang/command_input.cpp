#include "tools/interlang/command_input.h"

#include <cstdio>
#include <filesystem>

#include "foundation/path/path.h"
#include "platform/file.h"
#include "tools/interlang/file_access.h"
#include "tools/interlang/text.h"
#include "tools/options/options.h"

namespace translators {

void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw Failure("cannot write to standard output");
}

void warn(const std::string& message) {
    std::fprintf(stderr, "interlang: %s\n", message.c_str());
}

std::vector<std::u16string> paths(const Arguments& arguments) {
    std::vector<std::u16string> result;
    for (const std::string& file : arguments.files) {
        const bool expand = platform::kPathSeparator == u'\\';  // elsewhere the shell has done it
        for (const std::u16string& path :
             expand ? options::expandWildcards(wide(file)) : std::vector{wide(file)})
            result.push_back(path);
    }
    if (!result.empty())
        return result;
    const std::u16string folder = owlkit::withTrailingSeparator(wide(arguments.folder));
    result = languageFilesOf(folder);
    if (result.empty())
        throw Failure("no language files in " + utf8(folder));
    return result;
}

std::optional<Reference> possibleReference(const Arguments& arguments, const LanguageFiles& files) {
    return findReference(files, wide(arguments.reference), wide(arguments.referenceFile),
                         wide(arguments.folder));
}

std::string noReference(const Arguments& arguments) {
    return "no texts in the reference language " + translators::quoted(wide(arguments.reference)) +
           "; name their file with --reference-file";
}

Reference reference(const Arguments& arguments, const LanguageFiles& files) {
    if (std::optional<Reference> found = possibleReference(arguments, files))
        return *std::move(found);
    throw Failure(noReference(arguments));
}

void deliver(const Arguments& arguments, const std::string& text) {
    if (arguments.output.empty())
        return print(text);
    std::error_code error;
    if (!arguments.force && std::filesystem::is_regular_file(std::u16string(wide(arguments.output)), error))
        throw Failure(arguments.output + " exists already; --force replaces it");
    writeBytes(wide(arguments.output), text);
}

}  // namespace translators
