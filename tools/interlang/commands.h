// What the program does, one function a subcommand. Each returns the exit code and throws Failure.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tools/interlang/check.h"

namespace translators {

enum class ExitCode : int { Clean = 0, Warnings = 1, Errors = 2 };

// The command line; names and paths are UTF-8.
struct Arguments {
    std::vector<std::string> files;
    std::string folder = "langs";  // its language files are taken when none is named
    std::string reference = "en";
    std::string referenceFile;
    std::string language;
    std::string output;  // empty: standard output
    bool force = false;  // replaces an existing output
    bool inPlace = false;
    bool all = false;           // export: every language
    bool replace = false;       // import: only what comes in
    bool strict = false;        // import: warnings are errors
    std::size_t failUnder = 0;  // stats: hundredths
    bool removeOthers = false;  // fill: language files of the output folder that the folder does not have
    bool json = false;
    std::string format = "po";
    std::set<Check> checks;

    // show
    std::string kind = "files";
    std::uint32_t count = 1;
    std::string type = "file";
    std::string recycleBin = "full";
    std::uint32_t elevation = 1;
    bool systemDrive = false;
};

ExitCode runCheck(const Arguments& arguments);
ExitCode runStats(const Arguments& arguments);
ExitCode runShow(const Arguments& arguments);
ExitCode runFill(const Arguments& arguments);
ExitCode runFormat(const Arguments& arguments);
ExitCode runMerge(const Arguments& arguments);
ExitCode runNew(const Arguments& arguments);
ExitCode runExport(const Arguments& arguments);
ExitCode runImport(const Arguments& arguments);

}  // namespace translators
