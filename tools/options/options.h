// What the programs' command lines have in common: errors that tell what was probably meant, wildcards where
// no shell resolves them, and a man page and a completion for bash that are made from the option tables.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace options {

// Parses the arguments of this process, "--version" among them; nothing when the program is to go on, else
// its exit code, all being printed. "--man" and "--completion bash" print those. Wrong usage, exit code 2, is
// told in one line: the program's name, what is wrong, and what was probably meant.
std::optional<int> parse(CLI::App& app);

// The command line's tables as a man page, in troff.
std::string manPage(const CLI::App& app);

// A completion function of bash: the program's commands, their options, and files.
std::string bashCompletion(const CLI::App& app);

// The files that a path with '*' or '?' in its name stands for, in ascending order; the path itself where
// there are none. Letter case counts for nothing. Windows hands such paths to the programs as they are.
std::vector<std::u16string> expandWildcards(const std::u16string& path);

}  // namespace options
