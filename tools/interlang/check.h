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
    Missing,
    Placeholders,
    Escapes,
    Empty,
    AcceleratorTwice,
    Obsolete,
    Untranslated,
    Blanks,
    AcceleratorMissing,
    Repeated,
    Consistency,
};

struct CheckKind {
    const char* name;  // on the command line and in reports
    bool error;        // otherwise a warning
    const char* what;
};

// By Check.
inline constexpr std::array<CheckKind, 13> kChecks = {{
    {"syntax", true, "lines that end the reading of a file"},
    {"utf8", true, "bytes that are not UTF-8"},
    {"missing", true, "keys that the program asks for without a text in the reference language"},
    {"placeholders", true, "%1 and %2 not as often as in the reference language"},
    {"escapes", true, "backslashes that begin no escape"},
    {"empty", true, "texts of the reference language without a visible character"},
    {"accelerator-twice", true, "the same accelerator twice within one menu"},
    {"obsolete", false, "keys that the reference language does not have"},
    {"untranslated", false, "texts of several words as in the reference language"},
    {"blanks", false, "blanks and control characters at either end of a text"},
    {"accelerator-missing", false, "menu entries without an accelerator"},
    {"repeated", false, "texts that replace an earlier one of the same file"},
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

CheckResult check(LanguageFiles& files, const Reference& reference, const std::set<Check>& wanted);

}  // namespace translators
