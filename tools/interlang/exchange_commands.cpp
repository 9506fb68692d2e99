// Export and import.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>

#include "foundation/path/path.h"
#include "lang/language_file_names.h"
#include "platform/file.h"
#include "tools/interlang/command_input.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/file_access.h"
#include "tools/interlang/file_checks.h"
#include "tools/interlang/import.h"
#include "tools/interlang/layout.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view kExchangeEndings[] = {u".po", u".xlf", u".xliff"};

// PO names the traditional writing of Chinese by a region.
constexpr std::u16string_view kTraditionalChinese = u"zh-Hant";
constexpr std::u16string_view kTraditionalChineseInPo = u"zh_TW";

bool isFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(std::u16string(wide(path)), error);
}

// PO names regions as in pt_PT, language files as in pt-PT.
std::u16string withHyphens(std::u16string code) {
    std::ranges::replace(code, u'_', u'-');
    return code;
}

std::u16string codeInPo(std::u16string code) {
    if (code == kTraditionalChinese)
        return std::u16string(kTraditionalChineseInPo);
    std::ranges::replace(code, u'-', u'_');
    return code;
}

// What a syntax error hides of the language would be missing in what is exported.
void requireExportable(const LanguageFiles& files, const std::u16string& language) {
    requireCodeForm(language);
    for (const LanguageFile& file : files.files()) {
        if (namesLanguage(file, language))
            requireWhole(file);
    }
}

std::string exported(const Arguments& arguments, LanguageFiles& files, const Reference& other,
                     const std::u16string& language) {
    Exchange exchange = toExchange(language, files, other);
    if (arguments.format != "xliff") {
        exchange.language = utf8(codeInPo(language));
        return writePo(exchange);
    }
    std::u16string original = other.path;
    for (const LanguageFile& file : files.files()) {
        if (std::ranges::find(file.languages, language) != file.languages.end()) {
            original = file.path;
            break;
        }
    }
    return writeXliff(exchange, utf8(fs::path(original).filename().u16string()));
}

void exportAll(const Arguments& arguments, LanguageFiles& files, const Reference& other) {
    if (arguments.output.empty())
        throw Failure("--all needs a folder: -o DIR");
    if (arguments.format == "pot")
        throw Failure("there is one template for all languages: --to pot, without --all");
    for (const std::u16string& language : files.languages())
        requireExportable(files, language);
    std::error_code error;
    const fs::path folder(wide(arguments.output));
    fs::create_directories(folder, error);
    for (const std::u16string& language : files.languages()) {
        if (language == other.code)
            continue;
        Arguments single = arguments;
        single.output = utf8((folder / language).u16string()) + (arguments.format == "po" ? ".po" : ".xlf");
        deliver(single, exported(arguments, files, other, language));
    }
}

// An exchange file and what becomes of it.
struct Incoming {
    std::string path;
    Exchange exchange;
    std::u16string target;  // the language file; empty: standard output
    Imported result;
};

std::u16string languageOf(const Arguments& arguments, const Incoming& incoming) {
    std::u16string code = wide(arguments.language.empty() ? incoming.exchange.language : arguments.language);
    if (code.empty() && isFolder(arguments.files.front()))
        code = fs::path(wide(incoming.path)).stem().u16string();
    if (code.empty())
        throw Failure(incoming.path + ": it names no language; --lang does");
    if (!isCodeForm(code))
        throw Failure(incoming.path + ": no code of a language: " + translators::quoted(code));
    return code;
}

Incoming readIncoming(const std::string& path) {
    Incoming incoming;
    incoming.path = path;
    try {
        incoming.exchange = readExchange(readBytes(wide(path)));
    } catch (const Failure& failure) {
        const std::string what = failure.what();
        throw Failure(what.starts_with("cannot ") ? what : path + ": " + what);
    }
    return incoming;
}

// The code under which the files have the language, however they separate its parts.
std::u16string codeIn(const LanguageFiles& files, const std::u16string& code) {
    const std::vector<std::u16string> languages = files.languages();
    if (std::ranges::find(languages, code) != languages.end())
        return code;
    const auto same = std::ranges::find(languages, withHyphens(code), withHyphens);
    if (same != languages.end())
        return *same;
    return code == kTraditionalChineseInPo ? std::u16string(kTraditionalChinese) : withHyphens(code);
}

void merge(const Arguments& arguments, Incoming& incoming, const LanguageFiles& files,
           const LanguageFiles& around) {
    const std::u16string code = codeIn(files, languageOf(arguments, incoming));
    incoming.exchange.language = utf8(code);
    LanguageFile file;
    if (!files.files().empty()) {
        file = files.files().front();
        requireWhole(file);
        const bool has = std::ranges::find(file.languages, code) != file.languages.end();
        if (!file.languages.empty() && !has && !arguments.force)
            throw Failure(utf8(file.path) + " holds other languages; --force adds " +
                          translators::quoted(code));
    }
    Reference other{wide(arguments.reference), {}, {}, {}};
    std::vector<std::string> warnings = leftOut(file);
    std::optional<Reference> found = possibleReference(arguments, around);
    if (!found)
        found = possibleReference(arguments, LanguageFiles({}));
    if (found)
        other = *std::move(found);
    else
        warnings.push_back("nothing to compare with: " + noReference(arguments));
    if (!found && !incoming.exchange.source.empty())
        other.code = wide(incoming.exchange.source);
    try {
        incoming.result = importInto(std::move(file), incoming.exchange, std::move(other), arguments.replace);
    } catch (const Failure& failure) {
        throw Failure(incoming.path + ": " + failure.what());
    }
    std::ranges::move(warnings, std::back_inserter(incoming.result.warnings));
}

// One file: to the named output, or to standard output.
std::vector<Incoming> importFile(const Arguments& arguments) {
    Incoming incoming = readIncoming(arguments.files.front());
    incoming.target = wide(arguments.output);
    std::vector<std::u16string> existing;
    std::error_code error;
    if (!incoming.target.empty() && fs::is_regular_file(incoming.target, error))
        existing.push_back(incoming.target);
    const bool isNew = existing.empty() && !incoming.target.empty();
    merge(arguments, incoming, LanguageFiles(existing),
          LanguageFiles(isNew ? languageFilesOf(owlkit::folderOf(incoming.target)) : existing));
    std::vector<Incoming> all;
    all.push_back(std::move(incoming));
    return all;
}

// Every exchange file of a folder: each to the language file of its language.
std::vector<Incoming> importFolder(const Arguments& arguments) {
    const std::string& folder = arguments.files.front();
    auto names = platform::listFolder(wide(folder)).value_or(std::vector<std::u16string>());
    std::ranges::sort(names);
    const std::u16string target =
        owlkit::withTrailingSeparator(wide(arguments.output.empty() ? arguments.folder : arguments.output));
    const LanguageFiles around(languageFilesOf(target));
    std::vector<Incoming> all;
    std::set<std::u16string> targets;
    for (const std::u16string& name : names) {
        const auto endsWith = [&](std::u16string_view ending) { return name.ends_with(ending); };
        if (std::ranges::none_of(kExchangeEndings, endsWith))
            continue;
        Incoming incoming = readIncoming(utf8(owlkit::withTrailingSeparator(wide(folder)) + name));
        const std::u16string code = codeIn(around, languageOf(arguments, incoming));
        incoming.target = (target + code).append(owlkit::kLanguageFileEnding);
        std::vector<std::u16string> existing;
        for (const LanguageFile& file : around.files()) {
            if (existing.empty() && std::ranges::find(file.languages, code) != file.languages.end())
                existing.push_back(incoming.target = file.path);
        }
        if (!targets.insert(incoming.target).second)
            throw Failure(incoming.path + ": a second file for " + utf8(incoming.target));
        merge(arguments, incoming, LanguageFiles(existing), around);
        all.push_back(std::move(incoming));
    }
    if (all.empty())
        throw Failure("no PO or XLIFF files in " + folder);
    return all;
}

std::string summary(const Imported& result) {
    return std::to_string(result.taken) + " taken, " + std::to_string(result.kept) + " kept, " +
           std::to_string(result.fuzzy) + " fuzzy left out";
}

}  // namespace

ExitCode runExport(const Arguments& arguments) {
    LanguageFiles files(paths(arguments));
    const Reference other = reference(arguments, files);
    if (arguments.all) {
        exportAll(arguments, files, other);
        return ExitCode::Clean;
    }
    const std::u16string language = arguments.format == "pot" ? u"" : wide(arguments.language);
    if (language.empty() && arguments.format != "pot")
        throw Failure("which language? --lang CODE, or --all");
    if (!language.empty())
        requireExportable(files, language);
    if (!language.empty() && files.texts(language) == nullptr)
        throw Failure("no texts in " + translators::quoted(language));
    deliver(arguments, exported(arguments, files, other, language));
    return ExitCode::Clean;
}

ExitCode runImport(const Arguments& arguments) {
    const std::vector<Incoming> all =
        isFolder(arguments.files.front()) ? importFolder(arguments) : importFile(arguments);
    bool warned = false;
    for (const Incoming& incoming : all) {
        for (const std::string& warning : incoming.result.warnings)
            warn(incoming.path + ": " + warning);
        warned |= !incoming.result.warnings.empty();
    }
    if (warned && arguments.strict)
        throw Failure("nothing is written: --strict");
    for (const Incoming& incoming : all) {
        if (incoming.target.empty()) {
            print(incoming.result.bytes);
            warn(incoming.path + ": " + summary(incoming.result));
            continue;
        }
        writeBytes(incoming.target, incoming.result.bytes);
        print(utf8(incoming.target) + ": " + summary(incoming.result) + '\n');
    }
    return warned ? ExitCode::Warnings : ExitCode::Clean;
}

}  // namespace translators
