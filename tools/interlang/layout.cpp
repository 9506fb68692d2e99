#include "tools/interlang/layout.h"

#include <algorithm>

#include "foundation/stream/memory_stream.h"
#include "foundation/text/text.h"
#include "lang/loading_scope.h"
#include "tools/interlang/comments.h"
#include "tools/interlang/lossless.h"
#include "tools/interlang/recorder.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

const std::u16string kRule(40, u'#');

struct Entry {
    std::u16string key;
    Text text;
    bool untranslated = false;
};

// The order of the library's writer: the language's name, then keys like CXT_MENU_HELP, then all others.
int rank(std::u16string_view key) {
    const bool isIdentifier =
        key.size() >= 3 && std::ranges::all_of(key, [](char16_t unit) { return unit >= 32 && unit <= 96; });
    return key == kLanguageNameKey ? 0 : isIdentifier ? 1 : 2;
}

std::u16string fileForm(std::u16string_view written) {
    return owlkit::encodeEscapes(losslessForm(written, Medium::LanguageFile));
}

class Writer {
  public:
    explicit Writer(const Reference& reference) : reference_(reference) {}

    void comments(const std::vector<std::u16string>& lines) {
        for (const std::u16string& text : lines)
            line(text);
        if (!lines.empty())
            line({});
    }

    void language(std::u16string_view language, std::vector<Entry> entries) {
        if (entries.empty())
            return;
        std::ranges::stable_sort(entries, {}, [](const Entry& e) { return std::pair(rank(e.key), e.key); });
        line(kRule);
        line(u"LANG: ", language);
        line(kRule);
        line({});
        for (const Entry& item : entries)
            entry(item, language != reference_.code && !reference_.texts.empty());
    }

    void line(std::u16string_view start, std::u16string_view rest = {}) {
        bytes_ += utf8(start) + utf8(rest) + '\n';
    }

    std::string take() { return std::move(bytes_); }

  private:
    void entry(const Entry& item, bool compared) {
        for (const std::u16string& note : item.text.notes)
            line(note);
        if (item.text.meantEmpty && item.text.text.empty())
            line(kEmptyMark);
        source(item, compared);
        const std::u16string mark = item.untranslated ? std::u16string(kUntranslatedMark) + u' ' : u"";
        line(mark + u"KEY: ", item.key);
        line(mark + u"TEXT: ", fileForm(item.text.written));
        line({});
    }

    void source(const Entry& item, bool compared) {
        if (item.key == kLanguageNameKey) {
            if (compared)
                line(kLanguageComment);
            return;
        }
        const auto now = reference_.texts.find(item.key);
        const bool known = compared && now != reference_.texts.end();
        if (item.text.source && !item.untranslated) {
            if (known && isChanged(item.text, now->second))
                line(kNowMark, u" " + fileForm(now->second.written));
            line(u"# ", *item.text.source);
        } else if (known) {
            line(u"# ", fileForm(now->second.written));
        }
    }

    const Reference& reference_;
    std::string bytes_;
};

bool sameTexts(const Texts& a, const Texts& b) {
    return std::ranges::equal(a, b, [](const auto& x, const auto& y) {
        return x.first == y.first && x.second.text == y.second.text && x.second.notes == y.second.notes &&
               (!x.second.text.empty() || x.second.meantEmpty == y.second.meantEmpty);
    });
}

// What can be lost on the way is found by reading.
void requireSame(const std::string& bytes, const std::map<std::u16string, Texts>& texts) {
    LanguageFile copy;
    Recorder recorder(copy, 0);
    owlkit::interlang table;
    owlkit::MemoryStream content(bytes.data(), bytes.size());
    std::uint32_t line = 0;
    const owlkit::LoadingScope loading(table);
    const bool read = table.Parse(content, line, &recorder);
    for (const auto& [language, expected] : texts) {
        if (!read || !sameTexts(copy.texts[language], expected))
            throw Failure("the texts in " + quoted(language) + " cannot be written as a language file");
    }
}

// The opening comment without the rule that belongs to the heading of a language.
std::vector<std::u16string> openingLines(const std::vector<std::u16string>& lines) {
    std::size_t count = lines.size();
    while (count > 0 && (lines[count - 1].empty() || isLayoutComment(lines[count - 1])))
        --count;
    return {lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count)};
}

// A language of one file, sorted into what the reference has, and what it has not.
struct Parts {
    std::vector<Entry> known, obsolete;
};

Parts sorted(const LanguageFile& file, const std::u16string& language, const Reference& reference,
             const Texts& additions, std::map<std::u16string, Texts>& written) {
    Parts parts;
    const auto add = [&](const std::u16string& key, const Text& text, bool untranslated) {
        const bool known = reference.texts.contains(key);
        if (known || !untranslated || !text.notes.empty() || !text.written.empty())
            (known ? parts.known : parts.obsolete).push_back({key, text, untranslated});
        if (!untranslated)
            written[language].emplace(key, text);
    };
    Texts untranslated;
    if (const auto texts = file.untranslated.find(language); texts != file.untranslated.end())
        untranslated = texts->second;
    untranslated.insert(additions.begin(), additions.end());
    if (const auto texts = file.texts.find(language); texts != file.texts.end()) {
        for (const auto& [key, text] : texts->second) {
            const auto other = reference.texts.find(key);
            add(key, text,
                language != reference.code && other != reference.texts.end() &&
                    isUntranslated(text, other->second));
            untranslated.erase(key);
        }
    }
    for (const auto& [key, text] : untranslated)
        add(key, text, true);
    return parts;
}

}  // namespace

void requireWhole(const LanguageFile& file) {
    if (file.syntaxError)
        throw Failure(utf8(file.path) + ':' + std::to_string(file.syntaxError->line) + ": syntax error: " +
                      file.syntaxError->message + "; the rest of the file would be lost");
    if (!file.lonelyKeys.empty())
        throw Failure(utf8(file.path) + ':' + std::to_string(file.lonelyKeys.front().line) + ": " +
                      file.lonelyKeys.front().message + "; it would be lost");
    if (!file.invalidLines.empty())
        throw Failure(utf8(file.path) + ':' + std::to_string(file.invalidLines.front()) +
                      ": bytes that are not UTF-8; they would be lost");
    if (file.languages.empty() && !file.bytes.empty())
        throw Failure(utf8(file.path) + ": no texts in it; nothing of it would be left");
}

std::vector<std::string> leftOut(const LanguageFile& file) {
    std::vector<std::string> lines;
    for (const ReplacedText& text : file.replaced)
        lines.push_back(utf8(file.path) + ':' + std::to_string(text.formerLine) + ": " + utf8(text.language) +
                        ' ' + utf8(text.key) + ": left out, since line " + std::to_string(text.line) +
                        " replaces it: " + quoted(text.former));
    return lines;
}

std::map<std::u16string, Texts> missingTexts(const LanguageFiles& files, const Reference& reference) {
    std::map<std::u16string, Texts> missing;
    for (const std::u16string& language : files.languages()) {
        if (language == reference.code)
            continue;
        const Texts& texts = *files.texts(language);
        for (const auto& entry : reference.texts) {
            if (!texts.contains(entry.first))
                missing[language].try_emplace(entry.first);
        }
        for (const LanguageFile& file : files.files()) {
            if (const auto own = file.untranslated.find(language); own != file.untranslated.end())
                std::erase_if(missing[language],
                              [&](const auto& e) { return own->second.contains(e.first); });
        }
    }
    return missing;
}

std::string layOutFile(const LanguageFile& file, const Reference& reference,
                       const std::map<std::u16string, Texts>& additions) {
    requireWhole(file);
    Writer writer(reference);
    std::map<std::u16string, Texts> written;
    std::map<std::u16string, std::vector<Entry>> obsolete;
    writer.comments(openingLines(file.opening));
    for (const std::u16string& language : file.languages) {
        const auto added = additions.find(language);
        Parts parts =
            sorted(file, language, reference, added == additions.end() ? Texts() : added->second, written);
        writer.language(language, std::move(parts.known));
        obsolete[language] = std::move(parts.obsolete);
    }
    for (const std::u16string& language : file.languages) {
        if (obsolete[language].empty())
            continue;
        writer.line(kObsoleteComment, reference.code + u" has no such keys.");
        writer.line({});
        writer.language(language, std::move(obsolete[language]));
    }
    writer.comments(file.closing);
    std::string bytes = writer.take();
    requireSame(bytes, written);
    return bytes;
}

std::string layOutTemplate(std::u16string_view language, const Reference& reference) {
    if (language == reference.code)
        throw Failure(quoted(language) + " is the reference language");
    LanguageFile file;
    file.opening = reference.opening;
    file.languages.emplace_back(language);
    Texts& entries = file.untranslated[file.languages.front()];
    for (const auto& entry : reference.texts)
        entries.try_emplace(entry.first);
    return layOutFile(file, reference);
}

}  // namespace translators
