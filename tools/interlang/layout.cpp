#include "tools/interlang/layout.h"

#include <algorithm>

#include "foundation/stream/memory_stream.h"
#include "foundation/text/text.h"
#include "lang/loading_scope.h"
#include "tools/interlang/lossless.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

// Begins the section of obsolete keys, and is written anew each time.
constexpr std::u16string_view kObsoleteComment = u"# Obsolete: ";

// A backslash written as an escape comes through the table's decoding as a plain one.
void addText(owlkit::interlang& table, std::u16string_view language, std::u16string_view key,
             std::u16string_view written) {
    table.SetKey(key);
    table.SetLanguage(language);
    table.AddText(owlkit::replaceAll(losslessForm(written, Medium::LanguageFile), u"\\", u"\\x5C"));
}

bool readsBack(const std::string& bytes, std::u16string_view language, const Texts& texts) {
    owlkit::interlang copy;
    owlkit::MemoryStream content(bytes.data(), bytes.size());
    std::uint32_t line = 0;
    {
        const owlkit::LoadingScope loading(copy);
        if (!copy.Parse(content, line))
            return false;
    }
    std::vector<std::u16string> keys;
    copy.GetKeys(keys);
    return keys.size() == texts.size() && std::ranges::all_of(texts, [&](const auto& entry) {
               std::u16string text;
               return copy.Find(language, entry.first, owlkit::NotFoundMode::GiveNothing, &text) &&
                      text == entry.second.text;
           });
}

}  // namespace

std::string layOut(std::u16string_view language, const Texts& texts, const Reference& reference) {
    if (texts.empty())
        return {};
    const bool commented = language != reference.code && !reference.texts.empty();
    owlkit::interlang table;
    {
        const owlkit::LoadingScope loading(table);
        for (const auto& [key, text] : texts) {
            addText(table, language, key, text.written);
            const auto other = reference.texts.find(key);
            if (commented && other != reference.texts.end())
                addText(table, reference.code, key, other->second.written);
        }
    }
    owlkit::MemoryStream out;
    if (!table.Write(out, language, commented ? std::u16string_view(reference.code) : std::u16string_view()))
        throw Failure("cannot write " + quoted(language));
    std::string bytes(reinterpret_cast<const char*>(out.data()), static_cast<std::size_t>(out.size()));
    if (!readsBack(bytes, language, texts))
        throw Failure("the texts in " + quoted(language) + " cannot be written as a language file");
    return bytes;
}

void requireWhole(const LanguageFile& file) {
    if (file.syntaxError)
        throw Failure(utf8(file.path) + ':' + std::to_string(*file.syntaxError) +
                      ": syntax error; the rest of the file would be lost");
    if (!file.invalidLines.empty())
        throw Failure(utf8(file.path) + ':' + std::to_string(file.invalidLines.front()) +
                      ": bytes that are not UTF-8; they would be lost");
    if (file.texts.empty() && !file.bytes.empty())
        throw Failure(utf8(file.path) + ": no texts in it; nothing of it would be left");
}

std::map<std::u16string, Texts> missingTexts(const LanguageFiles& files, const Reference& reference) {
    std::map<std::u16string, Texts> missing;
    for (const std::u16string& language : files.languages()) {
        const Texts& texts = *files.texts(language);
        for (const auto& entry : reference.texts) {
            if (!texts.contains(entry.first))
                missing[language].try_emplace(entry.first);
        }
    }
    return missing;
}

std::string layOutFile(const LanguageFile& file, const Reference& reference,
                       const std::map<std::u16string, Texts>& additions) {
    requireWhole(file);
    std::string bytes = openingComment(file.opening);
    std::string obsoletePart;
    for (const std::u16string& language : file.languages) {
        Texts known, obsolete;
        for (const auto& entry : file.texts.at(language))
            (reference.texts.contains(entry.first) ? known : obsolete).insert(entry);
        if (const auto added = additions.find(language); added != additions.end())
            known.insert(added->second.begin(), added->second.end());
        bytes += layOut(language, known, reference);
        if (!obsolete.empty())
            obsoletePart += utf8(kObsoleteComment) + utf8(reference.code) + " has no such keys.\n\n" +
                            layOut(language, obsolete, {reference.code, {}, {}, {}});
    }
    return bytes + obsoletePart;
}

std::string layOutTemplate(std::u16string_view language, const Reference& reference) {
    if (language == reference.code)
        throw Failure(quoted(language) + " is the reference language");
    Texts texts;
    for (const auto& entry : reference.texts)
        texts.try_emplace(entry.first);
    return openingComment(reference.opening) + layOut(language, texts, reference);
}

std::string openingComment(const std::vector<std::u16string>& lines) {
    const auto isRule = [](std::u16string_view line) {
        return line.size() == 40 && line.find_first_not_of(u'#') == std::u16string_view::npos;
    };
    std::size_t count = lines.size();
    while (count > 0 && (lines[count - 1].empty() || isRule(lines[count - 1]) ||
                         lines[count - 1].starts_with(kObsoleteComment)))
        --count;
    std::string comment;
    for (std::size_t i = 0; i < count; ++i)
        comment += utf8(lines[i]) + '\n';
    return count == 0 ? comment : comment + '\n';
}

}  // namespace translators
