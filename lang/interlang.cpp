#include "lang/interlang.h"

#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"
#include "foundation/text/text.h"
#include "lang/escapes.h"
#include "lang/language_reader.h"
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
    currentKey_ = {};
    SetLanguage(u"");
    notFoundMode_ = NotFoundMode::UsePrimary;
}

void interlang::BeginLoad() {
    requireNotLoading();
    currentKey_ = {};
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
    currentKey_ = {};
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
    currentKey_ = pool_.keep(ToNarrow(key, kCharsetUtf8));
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
    std::u16string decoded(text);
    decodeEscapes(decoded);
    addKeptText(pool_.keep(ToNarrow(decoded, kCharsetUtf8)));
}

void interlang::expectKeys(std::size_t count) {
    expectedKeys_ = count;
    keys_.reserve(count);
}

void interlang::addKeptText(std::string_view text) {
    std::vector<std::string_view>& texts = currentEntry().texts;
    const std::size_t key = placeOfCurrentKey();
    if (key >= texts.size())
        texts.resize(key + 1);
    texts[key] = text;
    lastKey_ = key;
}

interlang::Language& interlang::currentEntry() {
    if (!currentPlace_)
        currentPlace_ = placeOf(currentLanguage_);
    if (!currentPlace_) {
        Language added{currentLanguage_, {}};
        added.texts.reserve(expectedKeys_);
        languages_.push_back(std::move(added));
        currentPlace_ = languages_.size() - 1;
    }
    return languages_[*currentPlace_];
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

// Lies nowhere when there is none.
std::string_view interlang::storedText(std::u16string_view language, std::u16string_view key) const {
    const std::optional<std::size_t> place = placeOf(language);
    const std::optional<std::size_t> at = place ? keys_.find(key) : std::nullopt;
    if (!at || *at >= languages_[*place].texts.size())
        return {};
    return languages_[*place].texts[*at];
}

bool interlang::Find(std::u16string_view language, std::u16string_view key, NotFoundMode mode,
                     std::u16string* out) const {
    requireNotLoading();
    std::string_view text = storedText(language, key);
    if (text.data() == nullptr && mode == NotFoundMode::UsePrimary)
        text = storedText(primary_, key);
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

bool interlang::Parse(ByteStream& stream, std::uint32_t& line, ReadObserver* observer) {
    return readLanguages(*this, stream, line, observer);
}

}  // namespace owlkit
