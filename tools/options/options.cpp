#include "tools/options/options.h"

#include <algorithm>
#include <cstdio>

#include "foundation/charset/convert.h"
#include "foundation/path/path.h"
#include "foundation/text/text.h"
#include "platform/command_line.h"
#include "platform/file.h"
#include "tools/options/edit_distance.h"

namespace options {
namespace {

constexpr int kWrongUsage = 2;

std::vector<std::string> optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({}))
        names.push_back(command->get_name());
    return names;
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

// The name that is nearest to `word`, if it is near.
std::string nearest(std::string_view word, const std::vector<std::string>& names) {
    std::string best;
    std::size_t bestDistance = std::max<std::size_t>(2, word.size() / 3) + 1;
    for (const std::string& name : names) {
        const std::size_t distance = editDistance<char>(word, name);
        if (distance < bestDistance && distance < name.size()) {
            bestDistance = distance;
            best = name;
        }
    }
    return best;
}

// " (did you mean ...?)" for the first word that nobody knows.
std::string suggestion(const CLI::App& app, const std::vector<std::string>& items) {
    const std::vector<std::string> commands = commandNames(app);
    std::vector<std::string> known = optionNames(app);
    bool commandMet = commands.empty();
    for (const std::string& item : items) {
        const std::string word = item.substr(0, item.find('='));
        std::string meant;
        if (word.starts_with("--") && !contains(known, word)) {
            meant = nearest(word, known);
        } else if (!word.starts_with('-') && !commandMet) {
            commandMet = true;
            if (!contains(commands, word))
                meant = nearest(word, commands);
            else
                known = optionNames(*app.get_subcommand(word));
        }
        if (!meant.empty())
            return " (did you mean " + meant + "?)";
    }
    return {};
}

std::string oneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return std::string(owlkit::trim(std::string_view(text)));
}

bool matches(std::u16string_view name, std::u16string_view pattern) {
    // Where the last '*' was met, from which more of the name can be given to it.
    std::size_t star = pattern.npos, resume = 0, n = 0, p = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != pattern.npos) {
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', p) == pattern.npos;
}

}  // namespace

std::optional<int> parse(CLI::App& app) {
    std::vector<std::string> items;
    for (const std::u16string& item : platform::commandLineItems())
        items.push_back(owlkit::ToNarrow(item, owlkit::kCharsetUtf8));
    app.set_version_flag("--version", app.get_name() + ' ' + NMSHELL_VERSION, "print the version");
    if (items == std::vector<std::string>{"--man"} ||
        items == std::vector<std::string>{"--completion", "bash"}) {
        std::fputs((items.size() == 1 ? manPage(app) : bashCompletion(app)).c_str(), stdout);
        return 0;
    }
    try {
        std::vector<std::string> reversed(items.rbegin(), items.rend());  // the parser takes them off the end
        app.parse(reversed);
        return std::nullopt;
    } catch (const CLI::Success& success) {
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "%s: %s%s; --help tells more\n", app.get_name().c_str(),
                     oneLine(error.what()).c_str(), suggestion(app, items).c_str());
        return kWrongUsage;
    }
}

std::vector<std::u16string> expandWildcards(const std::u16string& path) {
    const std::size_t start = owlkit::folderOf(path).size();
    const std::u16string pattern = owlkit::toLowerAscii(std::u16string_view(path).substr(start));
    if (pattern.find_first_of(u"*?") == pattern.npos)
        return {path};
    auto names = platform::listFolder(path.substr(0, start)).value_or(std::vector<std::u16string>());
    std::vector<std::u16string> paths;
    std::ranges::sort(names);
    for (const std::u16string& name : names) {
        if (matches(owlkit::toLowerAscii(name), pattern))
            paths.push_back(path.substr(0, start) + name);
    }
    return paths.empty() ? std::vector{path} : paths;
}

}  // namespace options
