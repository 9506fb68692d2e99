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

}  // namespace

void interlang::requireLoading() const {
    if (state_ != State::Loading)
        throwInvalidState();
}

void interlang::requireNotLoading() const {
    if (state_ == State::Loading)
        throwInvalidState();
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
    if (!activePlace_ && !(activePlace_ = placeOf(activeLanguage()))) {
        activeSource_ = settledSource(activeLanguage(), primary_);
        activePlace_ = placeOf(activeLanguage());
    }
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
    activePlace_.reset();
    primary_ = std::move(newPrimary);
}

// The names alone do not say it: files that came later may have brought a language that was missing when it
// was set.
bool interlang::usesLanguages(std::u16string_view active, std::u16string_view primary) const {
    if (state_ != State::Built || trim(primary) != primary_)
        return false;
    return chosenLanguage(active) == active_ && settledSource(active_, primary_) == activeSource_;
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
    if (key > texts.size())
        texts.resize(key);
    if (key == texts.size())
        texts.push_back(text);
    else
        texts[key] = text;
    lastKey_ = key;
}

interlang::Language& interlang::currentEntry() {
    if (!currentPlace_)
        currentPlace_ = placeOf(currentLanguage_);
    if (!currentPlace_) {
        Language added{currentLanguage_, {}};
        added.texts.reserve(std::exchange(expectedKeys_, 0));
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

// Both places may be missing. Lies nowhere when there is none.
std::string_view interlang::storedText(std::optional<std::size_t> language,
                                       std::optional<std::size_t> key) const {
    if (!language || !key || *key >= languages_[*language].texts.size())
        return {};
    return languages_[*language].texts[*key];
}

std::string_view interlang::keptText(std::string_view key) const {
    requireNotLoading();
    const std::optional<std::size_t> at = keys_.find(key);
    std::string_view text = storedText(activePlace_, at);
    if (text.data() == nullptr)
        text = storedText(placeOf(primary_), at);
    return text.data() != nullptr ? text : key;
}

bool interlang::Parse(ByteStream& stream, std::uint32_t& line, ReadObserver* observer) {
    return readLanguages(*this, stream, line, observer);
}

}  // namespace owlkit
