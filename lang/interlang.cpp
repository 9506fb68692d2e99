#include "lang/interlang.h"

#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"
#include "foundation/text/text.h"
#include "lang/consistency.h"
#include "lang/escapes.h"
#include "lang/language_reader.h"
#include "lang/language_writer.h"
#include "platform/locale.h"

namespace owlkit {
namespace {

std::u16string systemLanguage() {
    std::u16string name = platform::localeInfo(platform::kLocaleIso639LanguageName);
    return name.empty() ? platform::localeInfo(platform::kLocaleAbbreviatedLanguageName) : name;
}

// An active language by its name: an empty one is the user's own.
std::u16string chosenLanguage(std::u16string_view active) {
    const std::u16string_view name = trim(active);
    return name.empty() ? systemLanguage() : std::u16string(name);
}

[[noreturn]] void throwNoTranslation(std::u16string_view key) {
    throwNotFound(
        ("interlang translation not found for key '" + ToNarrow(key, kCharsetSystem) + "'").c_str());
}

}  // namespace

void interlang::requireLoading() const {
    if (state_ != State::Loading)
        throwInvalidState();
}

void interlang::requireNotLoading() const {
    if (state_ == State::Loading)
        throwInvalidState();
}

void interlang::Clear() {
    requireLoading();
    keys_.clear();
    languages_.clear();
    pool_.clear();
    active_.clear();
    activeSource_ = ActiveSource::Named;
    primary_.clear();
    currentKey_.clear();
    SetLanguage(u"");
    notFoundMode_ = NotFoundMode::UsePrimary;
}

void interlang::BeginLoad() {
    requireNotLoading();
    currentKey_.clear();
    currentLanguage_.clear();
    currentPlace_.reset();
    state_ = State::Loading;
}

// The active language is settled as a choice of where to look, not as a copy of a name: a copy could run out
// of memory and leave the table loading for good.
void interlang::EndLoad() {
    requireLoading();
    if (!knowsLanguage(activeLanguage()))
        activeSource_ = settledSource(activeLanguage(), primary_);
    currentKey_.clear();
    currentLanguage_.clear();
    state_ = State::Built;
}

void interlang::SetLanguages(std::u16string_view active, std::u16string_view primary) {
    requireLoading();
    std::u16string newActive = chosenLanguage(active);
    std::u16string newPrimary(trim(primary));
    active_ = std::move(newActive);
    activeSource_ = ActiveSource::Named;
    primary_ = std::move(newPrimary);
}

// The names alone do not say it: files that came later may have brought a language that was missing when it
// was set.
bool interlang::usesLanguages(std::u16string_view active, std::u16string_view primary) const {
    if (state_ != State::Built || trim(primary) != primary_)
        return false;
    return chosenLanguage(active) == active_ && settledSource(active_, primary_) == activeSource_;
}

void interlang::SetKey(std::u16string_view key) {
    requireLoading();
    currentKey_ = key;
}

void interlang::SetLanguage(std::u16string_view name) {
    requireLoading();
    currentLanguage_ = trim(name);
    currentPlace_.reset();
}

void interlang::AddText(std::u16string_view text) {
    requireLoading();
    if (currentKey_.empty() || currentLanguage_.empty())
        throwInvalidState();
    std::u16string decoded;
    if (text.find(u'\\') != text.npos) {
        decoded = text;
        decodeEscapes(decoded);
        text = decoded;
    }
    const std::u16string_view kept = pool_.keep(text);
    if (!currentPlace_)
        currentPlace_ = placeOf(currentLanguage_);
    if (!currentPlace_) {
        languages_.push_back({currentLanguage_, {}});
        currentPlace_ = languages_.size() - 1;
    }
    const std::size_t key = placeOfCurrentKey();
    std::vector<std::u16string_view>& texts = languages_[*currentPlace_].texts;
    if (key >= texts.size())
        texts.resize(key + 1);
    texts[key] = kept;
    lastKey_ = key;
}

// Files have their keys in the same order, so the next one is tried first.
std::size_t interlang::placeOfCurrentKey() {
    if (lastKey_ + 1 < keys_.size() && keys_[lastKey_ + 1] == currentKey_)
        return lastKey_ + 1;
    return keys_.findOrAdd(currentKey_);
}

std::optional<std::size_t> interlang::placeOf(std::u16string_view language) const {
    for (std::size_t place = 0; place < languages_.size(); ++place)
        if (languages_[place].name == language)
            return place;
    return std::nullopt;
}

std::u16string_view interlang::activeLanguage() const {
    if (activeSource_ == ActiveSource::Named)
        return active_;
    return activeSource_ == ActiveSource::Primary ? primary_ : languages_.front().name;
}

// Where the active language is looked up once loading has ended.
interlang::ActiveSource interlang::settledSource(std::u16string_view active,
                                                 std::u16string_view primary) const {
    if (knowsLanguage(active))
        return ActiveSource::Named;
    return knowsLanguage(primary) || languages_.empty() ? ActiveSource::Primary : ActiveSource::First;
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
    for (const std::size_t place : keys_.sorted())
        keys.emplace_back(keys_[place]);
    return keys.size();
}

// Lies nowhere when there is none.
std::u16string_view interlang::storedText(std::u16string_view language, std::u16string_view key) const {
    const std::optional<std::size_t> place = placeOf(language);
    const std::optional<std::size_t> at = place ? keys_.find(key) : std::nullopt;
    if (!at || *at >= languages_[*place].texts.size())
        return {};
    return languages_[*place].texts[*at];
}

bool interlang::Find(std::u16string_view language, std::u16string_view key, NotFoundMode mode,
                     std::u16string* out) const {
    requireNotLoading();
    std::u16string_view text = storedText(language, key);
    if (text.data() == nullptr && mode == NotFoundMode::UsePrimary)
        text = storedText(primary_, key);
    const bool found = text.data() != nullptr;
    if (!found && mode == NotFoundMode::Throw && state_ != State::Empty)
        throwNoTranslation(key);
    if (out != nullptr) {
        if (found)
            *out = text;
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
    text = replaceAll(text, u"%1", first);
    return replaceAll(text, u"%2", second);
}

bool interlang::Parse(ByteStream& stream, std::uint32_t& line, ReadObserver* observer) {
    return readLanguages(*this, stream, line, observer);
}

bool interlang::Write(ByteStream& out, std::u16string_view language, std::u16string_view reference) const {
    return writeLanguages(*this, out, language, reference);
}

bool interlang::CheckConsistency(std::u16string& report, std::int32_t maximum) const {
    return checkConsistency(*this, report, maximum);
}

}  // namespace owlkit
