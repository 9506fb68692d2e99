// What the program does, one function a subcommand. Each returns the exit code and throws Failure.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tools/interlang/check.h"

namespace translators {

enum ExitCode : int { kClean = 0, kWarnings = 1, kErrors = 2 };

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

int runCheck(const Arguments& arguments);
int runStats(const Arguments& arguments);
int runShow(const Arguments& arguments);
int runFill(const Arguments& arguments);
int runFormat(const Arguments& arguments);
int runMerge(const Arguments& arguments);
int runNew(const Arguments& arguments);
int runExport(const Arguments& arguments);
int runImport(const Arguments& arguments);

}  // namespace translators
