#include "tools/interlang/check.h"

#include <algorithm>
#include <utility>

#include "lang/loading_scope.h"
#include "tools/interlang/file_checks.h"
#include "tools/interlang/menu_levels.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

std::u16string_view withoutRegion(std::u16string_view language) {
    return language.substr(0, language.find_first_of(u"-_"));
}

class Checker {
  public:
    Checker(LanguageFiles& files, const Reference& reference, const std::set<Check>& wanted)
        : files_(files), reference_(reference), wanted_(wanted) {}

    CheckResult run(const std::vector<std::u16string>& unread) {
        for (const std::u16string& path : unread)
            add({Check::Unread,
                 path,
                 0,
                 {},
                 {},
                 "never read: the name of a language file ends in .lang.txt"});
        for (const LanguageFile& file : files_.files())
            checkFile(file);
        for (const std::u16string& language : files_.languages())
            checkLanguage(language, *files_.texts(language));
        if (files_.texts(reference_.code) != nullptr)
            checkReference();
        countTranslated();
        sort();
        if (wanted_.contains(Check::Consistency))
            checkConsistency();
        for (const Finding& finding : result_.findings)
            ++(kindOf(finding.check).error ? result_.errors : result_.warnings);
        return std::move(result_);
    }

  private:
    void add(Finding finding) {
        if (wanted_.contains(finding.check))
            result_.findings.push_back(std::move(finding));
    }

    void add(Check check, std::u16string_view language, std::u16string_view key, const Text& text,
             std::string message) {
        add({check, files_.files()[text.file].path, text.line, std::u16string(language), std::u16string(key),
             std::move(message)});
    }

    void checkFile(const LanguageFile& file) {
        for (const std::uint32_t line : file.invalidLines)
            add({Check::Utf8, file.path, line, {}, {}, "bytes that are not UTF-8"});
        if (file.syntaxError)
            add({Check::Syntax,
                 file.path,
                 file.syntaxError->line,
                 {},
                 {},
                 "syntax error; nothing below is read: " + file.syntaxError->message});
        const std::string reason = file.languages.empty() ? noTextsReason(file.bytes) : std::string();
        if (file.languages.empty() && (!file.syntaxError || !reason.empty())) {
            add({Check::NoTexts, file.path, 0, {}, {}, "no texts" + (reason.empty() ? "" : ": " + reason)});
        }
        if (std::string fault = fileNameFault(file); !fault.empty())
            add({Check::FileName, file.path, 0, {}, {}, std::move(fault)});
        for (const LineFault& fault : file.oddContinuations)
            add({Check::Continuation, file.path, fault.line, {}, {}, fault.message});
        for (const LineFault& fault : file.commentedTexts)
            add({Check::CommentedOut, file.path, fault.line, {}, {}, fault.message});
        for (const LineFault& fault : file.lonelyKeys)
            add({Check::LonelyKey, file.path, fault.line, {}, {}, fault.message});
        for (const ReplacedText& text : file.replaced)
            add({Check::Repeated, file.path, text.line, text.language, text.key,
                 "replaces the text of line " + std::to_string(text.formerLine)});
        for (const auto& [language, texts] : file.texts) {
            for (const auto& [key, text] : texts)
                checkText(language, key, text);
        }
    }

    void checkText(std::u16string_view language, std::u16string_view key, const Text& text) {
        if (const std::size_t at = owlkit::findBrokenEscape(text.written); at != std::u16string_view::npos)
            add(Check::Escapes, language, key, text,
                "no escape: " + utf8(text.written.substr(at, 6)) + " (a backslash is written as \\x5C)");
        if (!isBlank(text.text) && hasOuterBlanks(text.text))
            add(Check::Blanks, language, key, text, "begins or ends with a blank or a control character");
        const auto reference = reference_.texts.find(key);
        const bool known = reference != reference_.texts.end();
        const bool isReference = language == reference_.code;
        if (accelerators(text.text) > 1)
            add(Check::AcceleratorSeveral, language, key, text, "several accelerators: " + quoted(text.text));
        if (std::string fault = controlFault(text.text, known ? reference->second.text : u""); !fault.empty())
            add(Check::Control, language, key, text, std::move(fault));
        const bool mayBeEmpty =
            !isReference && (text.text.empty() || (known && isBlank(reference->second.text)));
        if (isBlank(text.text) && !text.meantEmpty && !mayBeEmpty)
            add(Check::Empty, language, key, text, "empty");
        else if (known && !isBlank(text.text))
            compare(language, key, text, reference->second);
        if (known && !isReference && (text.meantEmpty || !isBlank(text.text)))
            compareSource(language, key, text, reference->second);
    }

    void compareSource(std::u16string_view language, std::u16string_view key, const Text& text,
                       const Text& reference) {
        if (isChanged(text, reference))
            add(Check::Changed, language, key, text,
                "translated from \"" + utf8(printable(*text.source)) + "\"; it is now in " +
                    utf8(reference_.code) + ": " + quoted(reference.text));
    }

    void compare(std::u16string_view language, std::u16string_view key, const Text& text,
                 const Text& reference) {
        if (std::string difference = placeholderDifference(text.text, reference.text); !difference.empty())
            add(Check::Placeholders, language, key, text, std::move(difference));
        if (language == reference_.code)
            return;
        const std::string other = " in " + utf8(reference_.code) + ": " + quoted(reference.text);
        if (text.text == reference.text && withoutRegion(language) != withoutRegion(reference_.code) &&
            (key == kLanguageNameKey || !isInternational(reference.text)))
            add(Check::Untranslated, language, key, text, "as" + other);
        if (const bool here = endsInEllipsis(text.text); here != endsInEllipsis(reference.text))
            add(Check::Ellipsis, language, key, text,
                here ? "an ellipsis, unlike" + other : "no ellipsis, unlike" + other);
        if (isTooLong(text.text, reference.text))
            add(Check::Length, language, key, text,
                std::to_string(columns(text.text)) + " columns wide;" + other);
    }

    void checkLanguage(const std::u16string& language, const Texts& texts) {
        checkCode(language, texts);
        checkFiles(language);
        if (language != reference_.code)
            compareKeys(language, texts);
        if (wanted_.contains(Check::AcceleratorTwice) || wanted_.contains(Check::AcceleratorMissing))
            checkAccelerators(language, texts);
    }

    // Told where the language's texts begin.
    void checkCode(const std::u16string& language, const Texts& texts) {
        const auto first = std::ranges::min_element(
            texts, {}, [](const auto& entry) { return std::pair(entry.second.file, entry.second.line); });
        if (std::string fault = languageCodeFault(language); !fault.empty() && first != texts.end())
            add(Check::LanguageCode, language, {}, first->second, std::move(fault));
    }

    void checkFiles(const std::u16string& language) {
        std::map<std::u16string, const Text*> met;
        for (const LanguageFile& file : files_.files()) {
            const auto texts = file.texts.find(language);
            if (texts == file.texts.end())
                continue;
            for (const auto& [key, text] : texts->second) {
                const Text*& former = met[key];
                if (former != nullptr)
                    add(Check::TwoFiles, language, key, text,
                        "replaces the text of " + utf8(files_.files()[former->file].path) + ':' +
                            std::to_string(former->line));
                former = &text;
            }
        }
    }

    void compareKeys(const std::u16string& language, const Texts& texts) {
        for (const auto& [key, text] : texts) {
            if (!reference_.texts.contains(key))
                add(Check::Obsolete, language, key, text, "not in " + utf8(reference_.code));
        }
    }

    void checkReference() {
        for (const std::u16string& key : programKeys()) {
            if (!reference_.texts.contains(key))
                add({Check::Missing, reference_.path, 0, reference_.code, key, "missing"});
        }
    }

    // A language of a file that was not read whole seems to lack more than it does.
    void countTranslated() {
        result_.coverage = coverage(files_, reference_);
        for (const LanguageFile& file : files_.files()) {
            if (file.syntaxError)
                std::erase_if(result_.coverage,
                              [&](const Coverage& row) { return file.texts.contains(row.language); });
        }
    }

    void checkAccelerators(const std::u16string& language, const Texts& texts) {
        files_.setLanguages(language, {});
        // The same entries stand in several menus.
        std::set<std::pair<std::u16string, std::u16string>> told;
        for (const MenuLevel& level : menuLevels(files_.table())) {
            std::map<char16_t, const LevelEntry*> taken;
            for (const LevelEntry& entry : level.entries) {
                const auto text = texts.find(entry.key);
                if (text == texts.end())
                    continue;
                const char16_t letter = accelerator(entry.text);
                if (letter == 0) {
                    if (!isBlank(entry.text) && told.emplace(entry.key, u"").second)
                        add(Check::AcceleratorMissing, language, entry.key, text->second,
                            "no accelerator in " + quoted(entry.text));
                    continue;
                }
                const auto [other, isFree] = taken.try_emplace(letter, &entry);
                if (!isFree && told.emplace(other->second->key, entry.key).second)
                    add(Check::AcceleratorTwice, language, entry.key, text->second,
                        "accelerator " + quoted({&letter, 1}) + " is in the same menu that of " +
                            utf8(other->second->key) + ", line " +
                            std::to_string(texts.find(other->second->key)->second.line));
            }
        }
    }

    void sort() {
        const auto place = [this](const Finding& finding) {
            const auto file = std::ranges::find(files_.files(), finding.path, &LanguageFile::path);
            return std::pair(file - files_.files().begin(), finding.line);
        };
        std::ranges::stable_sort(result_.findings, {}, place);
    }

    void checkConsistency() {
        std::u16string report;
        if (files_.table().CheckConsistency(report, 0))
            return;
        result_.consistencyReport = utf8(report);
        add({Check::Consistency, {}, 0, {}, {}, "some keys do not have a text in every language"});
    }

    LanguageFiles& files_;
    const Reference& reference_;
    const std::set<Check>& wanted_;
    CheckResult result_;
};

}  // namespace

CheckResult check(LanguageFiles& files, const Reference& reference, const std::vector<std::u16string>& unread,
                  const std::set<Check>& wanted) {
    return Checker(files, reference, wanted).run(unread);
}

}  // namespace translators
