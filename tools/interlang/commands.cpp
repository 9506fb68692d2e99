#include "tools/interlang/commands.h"

#include <chrono>
#include <cstdio>

#include "foundation/text/text.h"
#include "platform/file.h"
#include "platform/terminal.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/fill.h"
#include "tools/interlang/layout.h"
#include "tools/interlang/report.h"
#include "tools/interlang/show.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw Failure("cannot write to standard output");
}

std::vector<std::u16string> paths(const Arguments& arguments) {
    std::vector<std::u16string> result;
    for (const std::string& file : arguments.files)
        result.push_back(wide(file));
    if (!result.empty())
        return result;
    const std::u16string folder = owlkit::withTrailingSeparator(wide(arguments.folder));
    result = languageFilesOf(folder);
    if (result.empty())
        throw Failure("no language files in " + utf8(folder));
    return result;
}

Reference reference(const Arguments& arguments, const LanguageFiles& files) {
    return findReference(files, wide(arguments.reference), wide(arguments.referenceFile),
                         wide(arguments.folder));
}

bool exists(const std::string& path) {
    return platform::fileAttributes(wide(path)) != platform::kInvalidFileAttributes;
}

void deliver(const Arguments& arguments, const std::string& text) {
    if (arguments.output.empty())
        return print(text);
    if (!arguments.force && exists(arguments.output))
        throw Failure(arguments.output + " exists already; --force replaces it");
    writeBytes(wide(arguments.output), text);
}

// Everything is laid out before the first file is touched.
int rewrite(const Arguments& arguments, bool addMissing) {
    const LanguageFiles files(paths(arguments));
    const Reference other = reference(arguments, files);
    auto additions = addMissing ? missingTexts(files, other) : std::map<std::u16string, Texts>();
    std::vector<std::string> results;
    for (const LanguageFile& file : files.files()) {
        results.push_back(layOutFile(file, other, additions));
        for (const std::u16string& language : file.languages)
            additions.erase(language);  // what a language lacks is added to its first file only
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        if (!arguments.inPlace)
            print(results[i]);
        else if (results[i] != files.files()[i].bytes)
            writeBytes(files.files()[i].path, results[i]);
    }
    return kClean;
}

std::string now() {
    using namespace std::chrono;
    const auto time = system_clock::now();
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<minutes>(time - day));
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d+0000", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()));
    return text;
}

bool isXml(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return owlkit::trimLeft(bytes).starts_with('<');
}

}  // namespace

int runCheck(const Arguments& arguments) {
    LanguageFiles files(paths(arguments));
    const CheckResult result = check(files, reference(arguments, files), arguments.checks);
    print(arguments.json ? toJson(result) : toText(result));
    return result.errors != 0 ? kErrors : result.warnings != 0 ? kWarnings : kClean;
}

int runStats(const Arguments& arguments) {
    const LanguageFiles files(paths(arguments));
    const Reference other = reference(arguments, files);
    const std::vector<Coverage> languages = coverage(files, other);
    print(arguments.json ? toJson(languages, other) : toText(languages));
    return kClean;
}

int runShow(const Arguments& arguments) {
    using nmshell::PathType;
    using nmshell::RecycleBinState;
    using nmshell::SelectionKind;
    LanguageFiles files(paths(arguments));
    const std::u16string language = wide(arguments.language);
    if (files.texts(language) == nullptr)
        throw Failure("no texts in " + quoted(language));
    files.setLanguages(language, wide(arguments.reference));
    nmshell::Selection selection;
    selection.kind = arguments.kind == "files"   ? SelectionKind::Files
                     : arguments.kind == "drive" ? SelectionKind::Drives
                                                 : SelectionKind::RecycleBin;
    selection.count = arguments.count;
    nmshell::MenuFacts facts;
    facts.firstPathType = arguments.type == "file" ? PathType::File : PathType::Folder;
    facts.firstPathOnSystemDrive = arguments.systemDrive;
    facts.recycleBin = arguments.recycleBin == "full"    ? RecycleBinState::HoldsItems
                       : arguments.recycleBin == "empty" ? RecycleBinState::Empty
                                                         : RecycleBinState::Unknown;
    facts.elevation = arguments.elevation;
    print(drawMenu(nmshell::buildMenu(selection, facts, files.table()), platform::prepareTerminal()));
    return kClean;
}

int runFormat(const Arguments& arguments) {
    return rewrite(arguments, false);
}

int runMerge(const Arguments& arguments) {
    return rewrite(arguments, true);
}

int runFill(const Arguments& arguments) {
    const LanguageFiles files(paths(arguments));
    const FillResult result =
        fillFolder(files, reference(arguments, files), wide(arguments.output), arguments.removeOthers);
    print(std::to_string(files.files().size()) + " files, " + std::to_string(result.filled) +
          " texts filled in, " + std::to_string(result.deleted) + " files deleted\n");
    return kClean;
}

int runNew(const Arguments& arguments) {
    const LanguageFiles files(arguments.referenceFile.empty() ? paths(arguments)
                                                              : std::vector<std::u16string>());
    const std::u16string language = wide(arguments.language);
    if (files.texts(language) != nullptr)
        throw Failure("there are texts in " + quoted(language) + " already");
    deliver(arguments, layOutTemplate(language, reference(arguments, files)));
    return kClean;
}

int runExport(const Arguments& arguments) {
    const LanguageFiles files(paths(arguments));
    const std::u16string language = wide(arguments.language);
    const Texts* texts = files.texts(language);
    if (texts == nullptr)
        throw Failure("no texts in " + quoted(language));
    const Exchange exchange = toExchange(language, *texts, reference(arguments, files));
    deliver(arguments, arguments.format == "po" ? writePo(exchange, now())
                                                : writeXliff(exchange, arguments.language + ".lang.txt"));
    return kClean;
}

int runImport(const Arguments& arguments) {
    const std::string& path = arguments.files.front();
    const std::string bytes = readBytes(wide(path));
    Exchange exchange;
    try {
        exchange = isXml(bytes) ? readXliff(bytes) : readPo(bytes);
    } catch (const Failure& failure) {
        throw Failure(path + ": " + failure.what());
    }
    if (!arguments.language.empty())
        exchange.language = arguments.language;
    if (exchange.language.empty())
        throw Failure(path + ": it names no language; --lang does");
    if (exchange.source.empty())
        exchange.source = arguments.reference;
    // An existing file keeps its opening comment.
    std::vector<std::u16string> opening;
    if (!arguments.output.empty() && exists(arguments.output)) {
        const LanguageFiles existing({wide(arguments.output)});
        for (const std::u16string& language : existing.languages())
            if (language != wide(exchange.language))
                throw Failure(arguments.output + " holds " + quoted(language) + " too, which would be lost");
        opening = existing.files().front().opening;
    }
    deliver(arguments, toLanguageFile(exchange, opening));
    return kClean;
}

}  // namespace translators
