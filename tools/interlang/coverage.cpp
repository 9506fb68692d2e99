#include "tools/interlang/coverage.h"

#include <algorithm>

#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

void count(Coverage& row, const Text* text, const Text& reference, bool isReference) {
    if (text == nullptr)
        ++row.missing;
    else if (isBlank(text->text) && !text->meantEmpty && (isReference || !isBlank(reference.text)))
        ++row.empty;
    else
        ++row.translated;
    if (!isReference && text != nullptr && text->text == reference.text && !isInternational(reference.text))
        ++row.asReference;
}

}  // namespace

std::vector<Coverage> coverage(const LanguageFiles& files, const Reference& reference) {
    std::vector<Coverage> languages;
    for (const std::u16string& language : files.languages()) {
        const Texts& texts = *files.texts(language);
        Coverage row;
        row.language = language;
        row.keys = reference.texts.size();
        if (const auto name = texts.find(kLanguageNameKey); name != texts.end())
            row.name = name->second.text;
        for (const auto& [key, other] : reference.texts) {
            const auto text = texts.find(key);
            const std::size_t before = row.translated;
            count(row, text == texts.end() ? nullptr : &text->second, other, language == reference.code);
            if (row.translated == before)
                row.untranslated.push_back(key);
        }
        row.obsolete = static_cast<std::size_t>(std::ranges::count_if(
            texts, [&](const auto& text) { return !reference.texts.contains(text.first); }));
        languages.push_back(std::move(row));
    }
    return languages;
}

std::size_t percent(const Coverage& language) {
    return language.keys == 0 ? 100 : language.translated * 100 / language.keys;
}

}  // namespace translators
