#include "tools/interlang/commands.h"

#include <algorithm>
#include <iterator>

#include "foundation/path/path.h"
#include "platform/terminal.h"
#include "tools/interlang/command_input.h"
#include "tools/interlang/file_access.h"
#include "tools/interlang/file_checks.h"
#include "tools/interlang/fill.h"
#include "tools/interlang/layout.h"
#include "tools/interlang/report.h"
#include "tools/interlang/show.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

// Everything is laid out before the first file is touched.
ExitCode rewrite(const Arguments& arguments, bool addMissing) {
    const LanguageFiles files(paths(arguments));
    const Reference other = reference(arguments, files);
    auto additions = addMissing ? missingTexts(files, other) : std::map<std::u16string, Texts>();
    std::vector<std::string> results;
    for (const LanguageFile& file : files.files()) {
        results.push_back(layOutFile(file, other, additions));
        for (const std::u16string& language : file.languages)
            additions.erase(language);  // what a language lacks is added to its first file only
    }
    ExitCode code = ExitCode::Clean;
    for (std::size_t i = 0; i < results.size(); ++i) {
        for (const std::string& line : leftOut(files.files()[i])) {
            warn(line);
            code = ExitCode::Warnings;
        }
        if (!arguments.inPlace)
            print(results[i]);
        else if (results[i] != files.files()[i].bytes)
            writeBytes(files.files()[i].path, results[i]);
    }
    return code;
}

// Errors where a syntax error hides a part of one of the files that `concerned` says, which is told.
template <class Concerned>
ExitCode warnOfHidden(const LanguageFiles& files, const char* what, Concerned concerned) {
    ExitCode code = ExitCode::Clean;
    for (const LanguageFile& file : files.files()) {
        if (!file.syntaxError || !concerned(file))
            continue;
        warn(utf8(file.path) + ':' + std::to_string(file.syntaxError->line) +
             ": syntax error; what stands below is not " + what);
        code = ExitCode::Errors;
    }
    return code;
}

nmshell::Selection selectionOf(const Arguments& arguments) {
    using nmshell::SelectionKind;
    nmshell::Selection selection;
    selection.kind = arguments.kind == "files"   ? SelectionKind::Files
                     : arguments.kind == "drive" ? SelectionKind::Drives
                                                 : SelectionKind::RecycleBin;
    selection.count = arguments.count;
    return selection;
}

nmshell::MenuFacts factsOf(const Arguments& arguments) {
    using nmshell::RecycleBinState;
    using owlkit::PathType;
    nmshell::MenuFacts facts;
    facts.firstPathType = arguments.type == "file" ? PathType::File : PathType::Folder;
    facts.firstPathOnSystemDrive = arguments.systemDrive;
    facts.recycleBin = arguments.recycleBin == "full"    ? RecycleBinState::HoldsItems
                       : arguments.recycleBin == "empty" ? RecycleBinState::Empty
                                                         : RecycleBinState::Unknown;
    facts.elevation = static_cast<owlkit::ElevationState>(arguments.elevation);
    return facts;
}

}  // namespace

ExitCode runCheck(const Arguments& arguments) {
    const std::vector<std::u16string> named = paths(arguments);
    LanguageFiles files(named);
    std::vector<std::u16string> unread;
    std::ranges::copy_if(named, std::back_inserter(unread), isNeverRead);
    if (arguments.files.empty())
        unread = unreadFilesOf(owlkit::withTrailingSeparator(wide(arguments.folder)));
    const CheckResult result = check(files, reference(arguments, files), unread, arguments.checks);
    print(arguments.json ? toJson(result) : toText(result));
    return result.errors != 0     ? ExitCode::Errors
           : result.warnings != 0 ? ExitCode::Warnings
                                  : ExitCode::Clean;
}

ExitCode runStats(const Arguments& arguments) {
    const LanguageFiles files(paths(arguments));
    const Reference other = reference(arguments, files);
    const std::vector<Coverage> languages = coverage(files, other);
    print(arguments.json ? toJson(languages, other) : toText(languages));
    ExitCode code = warnOfHidden(files, "counted", [](const LanguageFile&) { return true; });
    for (const Coverage& row : languages) {
        if (percent(row) >= arguments.failUnder)
            continue;
        warn(utf8(row.language) + ": " + std::to_string(percent(row)) + " % are less than " +
             std::to_string(arguments.failUnder));
        code = ExitCode::Errors;
    }
    return code;
}

ExitCode runShow(const Arguments& arguments) {
    LanguageFiles files(paths(arguments));
    const std::u16string language = wide(arguments.language);
    const Reference other = reference(arguments, files);
    const ExitCode code =
        warnOfHidden(files, "shown", [&](const LanguageFile& file) { return namesLanguage(file, language); });
    if (files.texts(language) == nullptr)
        throw Failure("no texts in " + quoted(language));
    files.setLanguages(language, other.code);
    print(drawMenu(nmshell::buildMenu(selectionOf(arguments), factsOf(arguments), files.table()),
                   platform::prepareTerminal()));
    return code;
}

ExitCode runFormat(const Arguments& arguments) {
    return rewrite(arguments, false);
}

ExitCode runMerge(const Arguments& arguments) {
    return rewrite(arguments, true);
}

ExitCode runFill(const Arguments& arguments) {
    const LanguageFiles files(paths(arguments));
    const FillResult result =
        fillFolder(files, reference(arguments, files), wide(arguments.output), arguments.removeOthers);
    print(std::to_string(files.files().size()) + " files, " + std::to_string(result.filled) +
          " texts filled in, " + std::to_string(result.deleted) + " files deleted\n");
    return ExitCode::Clean;
}

ExitCode runNew(const Arguments& arguments) {
    const LanguageFiles files(arguments.referenceFile.empty() ? paths(arguments)
                                                              : std::vector<std::u16string>());
    const std::u16string language = wide(arguments.language);
    requireCodeForm(language);
    if (files.texts(language) != nullptr)
        throw Failure("there are texts in " + quoted(language) + " already");
    deliver(arguments, layOutTemplate(language, reference(arguments, files)));
    return ExitCode::Clean;
}

}  // namespace translators
