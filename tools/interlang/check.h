// What can be wrong with language files.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tools/interlang/coverage.h"

namespace translators {

enum class Check : std::uint32_t {
    Syntax,
    Utf8,
    NoTexts,
    LonelyKey,
    Missing,
    Placeholders,
    Escapes,
    Empty,
    AcceleratorTwice,
    Changed,
    Obsolete,
    Untranslated,
    Blanks,
    Control,
    Ellipsis,
    Length,
    AcceleratorMissing,
    AcceleratorSeveral,
    Repeated,
    TwoFiles,
    Continuation,
    CommentedOut,
    LanguageCode,
    FileName,
    Unread,
    Consistency,
};

struct CheckKind {
    const char* name;  // on the command line and in reports
    bool error;        // otherwise a warning
    const char* what;
};

// By Check.
inline constexpr std::array<CheckKind, 26> kChecks = {{
    {"syntax", true, "lines that end the reading of a file"},
    {"utf8", true, "bytes that are not UTF-8"},
    {"no-texts", true, "files without texts"},
    {"lonely-key", true, "keys without a text"},
    {"missing", true, "keys that the program asks for without a text in the reference language"},
    {"placeholders", true, "%1 and %2 not as often as in the reference language, and unknown ones"},
    {"escapes", true, "backslashes that begin no escape"},
    {"empty", true, "texts without a visible character that are not meant to be empty"},
    {"accelerator-twice", true, "the same accelerator twice within one menu"},
    {"changed", false, "texts that were translated from another text than the reference's"},
    {"obsolete", false, "keys that the reference language does not have"},
    {"untranslated", false, "texts of several words as in the reference language"},
    {"blanks", false, "blanks and control characters at either end of a text"},
    {"control", false, "control characters, invisible ones, and directions that are not ended"},
    {"ellipsis", false, "an ellipsis at the end here or in the reference language only"},
    {"length", false, "texts much longer than in the reference language"},
    {"accelerator-missing", false, "menu entries without an accelerator"},
    {"accelerator-several", false, "texts with several accelerators"},
    {"repeated", false, "texts that replace an earlier one of the same file"},
    {"two-files", false, "texts that replace one of another file"},
    {"continuation", false, "lines that continue a text and were hardly meant to"},
    {"commented-out", false, "texts that stand behind #~ and are not in use"},
    {"language-code", false, "codes that Windows never reports"},
    {"file-name", false, "files named after another language than theirs"},
    {"unread", false, "files that no program reads because of their names"},
    {"consistency", false, "keys without a text in every language, as a report"},
}};

inline const CheckKind& kindOf(Check check) {
    return kChecks[static_cast<std::size_t>(check)];
}

struct Finding {
    Check check;
    std::u16string path;     // empty for what concerns no file
    std::uint32_t line = 0;  // 0: the whole file
    std::u16string language;
    std::u16string key;
    std::string message;
};

struct CheckResult {
    std::vector<Finding> findings;   // by file, in the order of the command line, and line
    std::vector<Coverage> coverage;  // of the files without syntax errors
    std::string consistencyReport;   // empty when all is well, or when it was not asked for
    std::size_t errors = 0;
    std::size_t warnings = 0;
};

// `unread` are the paths of files that the program never reads.
CheckResult check(LanguageFiles& files, const Reference& reference, const std::vector<std::u16string>& unread,
                  const std::set<Check>& wanted);

}  // namespace translators
