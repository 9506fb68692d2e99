// What others ask of the table and do with it. The extension itself needs none of this.
#include <algorithm>
#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"
#include "foundation/text/text.h"
#include "lang/consistency.h"
#include "lang/interlang.h"
#include "lang/language_writer.h"

namespace owlkit {
namespace {

[[noreturn]] void throwNoTranslation(std::u16string_view key) {
    throwNotFound(
        ("interlang translation not found for key '" + ToNarrow(key, kCharsetSystem) + "'").c_str());
}

}  // namespace

void interlang::Clear() {
    requireLoading();
    keys_.clear();
    languages_.clear();
    pool_.clear();
    active_.clear();
    activeSource_ = ActiveSource::Named;
    activePlace_.reset();
    primary_.clear();
    currentKey_ = {};
    SetLanguage(u"");
    notFoundMode_ = NotFoundMode::UsePrimary;
}

void interlang::SetKey(std::u16string_view key) {
    requireLoading();
    currentKey_ = pool_.keep(ToNarrow(key, kCharsetUtf8));
}

bool interlang::HasLanguage(std::u16string_view name) const {
    requireNotLoading();
    return knowsLanguage(name);
}

std::size_t interlang::GetLanguages(std::vector<std::u16string>& names) const {
    requireNotLoading();
    names.clear();
    names.reserve(languages_.size());
    for (const Language& language : languages_)
        names.push_back(language.name);
    return names.size();
}

std::size_t interlang::GetKeys(std::vector<std::u16string>& keys) const {
    requireNotLoading();
    keys.clear();
    keys.reserve(keys_.size());
    for (std::size_t place = 0; place < keys_.size(); ++place)
        keys.push_back(ToWide(keys_[place], kCharsetUtf8));
    std::sort(keys.begin(), keys.end());
    return keys.size();
}

bool interlang::Find(std::u16string_view language, std::u16string_view key, NotFoundMode mode,
                     std::u16string* out) const {
    requireNotLoading();
    const std::optional<std::size_t> at = keys_.find(key);
    std::string_view text = storedText(placeOf(language), at);
    if (text.data() == nullptr && mode == NotFoundMode::UsePrimary)
        text = storedText(placeOf(primary_), at);
    const bool found = text.data() != nullptr;
    if (!found && mode == NotFoundMode::Throw && state_ != State::Empty)
        throwNoTranslation(key);
    if (out != nullptr) {
        if (found)
            *out = ToWide(text, kCharsetUtf8);
        else if (mode == NotFoundMode::UsePrimary || mode == NotFoundMode::GiveKey)
            *out = key;
        else
            out->clear();
    }
    return found;
}

std::u16string interlang::GetText(std::u16string_view key, std::u16string_view language) const {
    std::u16string text;
    Find(language.empty() ? activeLanguage() : language, key, notFoundMode_, &text);
    return text;
}

bool interlang::HasText(std::u16string_view key, std::u16string_view language) const {
    return Find(language.empty() ? activeLanguage() : language, key, NotFoundMode::GiveNothing);
}

std::u16string interlang::GetTextWithArgs(std::u16string_view key, std::u16string_view first,
                                          std::u16string_view second, std::u16string_view language) const {
    std::u16string text = GetText(key, language);
    for (const auto& [place, argument] : {std::pair(u"%1", first), std::pair(u"%2", second)})
        if (text.find(place) != text.npos)
            text = replaceAll(text, place, argument);
    return text;
}

bool interlang::Write(ByteStream& out, std::u16string_view language, std::u16string_view reference) const {
    return writeLanguages(*this, out, language, reference);
}

bool interlang::CheckConsistency(std::u16string& report, std::int32_t maximum) const {
    return checkConsistency(*this, report, maximum);
}

}  // namespace owlkit
