// The man page and the completion, from the tables that parse the command line.
#include <algorithm>

#include "foundation/text/text.h"
#include "tools/options/options.h"

namespace options {
namespace {

// A hyphen that is to be typed, and what begins a line of troff, need a backslash.
std::string troff(const std::string& text) {
    std::string result = owlkit::replaceAll(owlkit::replaceAll(text, "\\", "\\e"), "-", "\\-");
    if (result.starts_with('.') || result.starts_with('\''))
        result.insert(0, "\\&");
    return owlkit::replaceAll(owlkit::replaceAll(result, "\n.", "\n\\&."), "\n'", "\n\\&'");
}

std::string bold(const std::string& text) {
    return "\\fB" + troff(text) + "\\fR";
}

std::string argument(const CLI::Option& option) {
    return option.get_type_size() == 0 ? "" : " \\fI" + troff(option.get_type_name()) + "\\fR";
}

std::string optionEntry(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "" : ", ") + bold("-" + name) + argument(option);
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "" : ", ") + bold("--" + name) + argument(option);
    if (names.empty())
        names = "\\fI" + troff(option.get_name(true)) + "\\fR";
    std::string text = troff(option.get_description());
    if (!option.get_default_str().empty())
        text += " (default " + troff(option.get_default_str()) + ')';
    return ".TP\n" + names + '\n' + text + '\n';
}

std::string entries(const CLI::App& app) {
    std::string text;
    for (const CLI::Option* option : app.get_options())
        text += optionEntry(*option);
    return text;
}

std::string wordsOf(const CLI::App& app) {
    std::string words;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames())
            words += " --" + name;
        for (const std::string& name : option->get_snames())
            words += " -" + name;
    }
    return words.substr(std::min<std::size_t>(1, words.size()));
}

}  // namespace

std::string manPage(const CLI::App& app) {
    std::string upper = app.get_name();
    std::ranges::transform(upper, upper.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    const auto commands = app.get_subcommands({});
    std::string page = ".TH " + upper + " 1 \"\" \"nmshell " + NMSHELL_VERSION + "\"\n.SH NAME\n" +
                       troff(app.get_name()) + " \\- " + troff(app.get_description()) + "\n.SH SYNOPSIS\n" +
                       bold(app.get_name()) + (commands.empty() ? "" : " \\fICOMMAND\\fR") +
                       " [\\fIOPTION\\fR ...] [\\fIARGUMENT\\fR ...]\n.SH OPTIONS\n" + entries(app);
    if (!commands.empty())
        page += ".SH COMMANDS\n";
    for (const CLI::App* command : commands)
        page += ".SS " + troff(command->get_name()) + '\n' + troff(command->get_description()) + ".\n" +
                entries(*command);
    return page + ".SH EXIT STATUS\n" + troff(app.get_footer()) + '\n';
}

std::string bashCompletion(const CLI::App& app) {
    const std::string& name = app.get_name();
    std::string cases, commands;
    for (const CLI::App* command : app.get_subcommands({})) {
        commands += ' ' + command->get_name();
        cases += "        " + command->get_name() + ") words=\"" + wordsOf(*command) + "\" ;;\n";
    }
    cases += "        *) words=\"" + wordsOf(app) + commands + "\" ;;\n";
    return "# bash completion for " + name + "\n_" + name +
           "() {\n"
           "    local words\n"
           "    case ${COMP_WORDS[1]} in\n" +
           cases +
           "    esac\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\")\n"
           "}\n"
           "complete -o default -F _" +
           name + ' ' + name + '\n';
}

}  // namespace options
