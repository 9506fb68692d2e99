// The translation table: for every key its text in every language that the language files gave.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/charset/charset.h"
#include "lang/key_table.h"
#include "lang/not_found_mode.h"
#include "lang/text_pool.h"

namespace owlkit {

class ByteStream;
class ReadObserver;

// Keys, language names and texts are compared by code unit, letter case included. Keys and texts are kept in
// UTF-8, from which each code unit comes back: so those of a file lie where they were read.
//
// The table is filled between BeginLoad and EndLoad and asked afterwards. "Loading" below marks operations
// that need the first, "built" those that need the second; called in the wrong state they throw
// std::logic_error "invalid state". A table into which nothing was ever loaded (empty) answers the built
// operations with nothing: false, 0, the key; it is consistent. Several threads may ask a built one.
class interlang {
  public:
    enum class State : std::uint32_t { Empty = 0, Loading = 1, Built = 2 };

    interlang() = default;
    interlang(const interlang&) = delete;
    interlang& operator=(const interlang&) = delete;

    State state() const { return state_; }

    // Loading: removes all that was loaded and set; the table stays loading.
    void Clear();
    // Empty or built: begins loading; what was loaded before stays. Current key and language become empty.
    void BeginLoad();
    // Loading: ends it. An active language that no file gave becomes the primary language, and when that has
    // no texts either the first language that was read. Once the state is right nothing in here can fail.
    void EndLoad();

    // Loading: sets the active and the primary language, both trimmed. An empty active language means the
    // user's own: the ISO 639 name of GetLocaleInfoW, or the abbreviated language name when that is empty.
    void SetLanguages(std::u16string_view active, std::u16string_view primary);
    // Whether setting these two between BeginLoad and EndLoad would change no answer. Writes nothing.
    bool usesLanguages(std::u16string_view active, std::u16string_view primary) const;

    // Loading: where the next text goes, also from one file to the next. Only the language is trimmed.
    void SetKey(std::u16string_view key);
    void SetLanguage(std::u16string_view name);
    // Loading, with a current key and a current language: decodes the escapes of `text` (lang/escapes.h) and
    // stores it, in place of an earlier text of the same key and language.
    void AddText(std::u16string_view text);

    // For the reader, which has made sure of state, key and language: SetKey and, escapes apart, AddText of
    // UTF-8 that lies in the pool.
    TextPool& pool() { return pool_; }
    void expectKeys(std::size_t count);  // of a file, and so of its first language
    void prefetchKey(std::string_view key) const { keys_.prefetch(key); }
    void setKeptKey(std::string_view key) { currentKey_ = key; }
    void addKeptText(std::string_view text);
    std::string_view currentKey() const { return currentKey_; }
    const std::u16string& currentLanguage() const { return currentLanguage_; }

    // Loading: reads a language file; see readLanguages in lang/language_reader.h.
    bool Parse(ByteStream& stream, std::uint32_t& line, ReadObserver* observer = nullptr);
    // Built: writes languages as a file; see writeLanguages in lang/language_writer.h.
    bool Write(ByteStream& out, std::u16string_view language = {}, std::u16string_view reference = {}) const;

    // Built: what there is. The lists are replaced; the result is their length.
    bool HasLanguage(std::u16string_view name) const;
    std::size_t GetLanguages(std::vector<std::u16string>& names) const;  // in the order first met
    std::size_t GetKeys(std::vector<std::u16string>& keys) const;        // ascending
    // Built: whether there is a text; it, or what `mode` says, is put into `out` unless that is null.
    bool Find(std::u16string_view language, std::u16string_view key, NotFoundMode mode,
              std::u16string* out = nullptr) const;

    // Built: lookups in the given language, or in the active one when it is empty.
    std::u16string GetText(std::u16string_view key, std::u16string_view language = {}) const;
    bool HasText(std::u16string_view key, std::u16string_view language = {}) const;
    // Built: GetText of a key in UTF-8 and the active language, as UTF-8: a part of the table, where it stays
    // until Clear(), or `key` itself.
    std::string_view keptText(std::string_view key) const;
    // Built: GetText, then "%1" replaced everywhere by `first`, and in what that gives "%2" by `second`.
    std::u16string GetTextWithArgs(std::u16string_view key, std::u16string_view first,
                                   std::u16string_view second = {}, std::u16string_view language = {}) const;

    // Built: whether every key has a text in every language; see checkConsistency in lang/consistency.h.
    bool CheckConsistency(std::u16string& report, std::int32_t maximum) const;

    // The narrow forms, which the extension itself does not call: language names in ISO-8859-1, keys and
    // texts in the system charset or the one given, '?' for what cannot be converted.
    void SetLanguages(std::string_view active, std::string_view primary);
    void SetKey(std::string_view key, CharsetCode charset = kCharsetSystem);
    void SetLanguage(std::string_view name);
    void AddText(std::string_view text, CharsetCode charset = kCharsetSystem);
    bool Write(ByteStream& out, std::string_view language, std::string_view reference = {}) const;
    bool HasLanguage(std::string_view name) const;
    std::size_t GetLanguages(std::vector<std::string>& names) const;
    std::size_t GetKeys(std::vector<std::string>& keys) const;
    bool Find(std::string_view language, std::string_view key, NotFoundMode mode, std::string* out = nullptr,
              CharsetCode charset = kCharsetSystem) const;
    std::string GetText(std::string_view key, std::string_view language = {},
                        CharsetCode charset = kCharsetSystem) const;
    bool HasText(std::string_view key, std::string_view language = {},
                 CharsetCode charset = kCharsetSystem) const;
    std::string GetTextWithArgs(std::string_view key, std::string_view first, std::string_view second = {},
                                std::string_view language = {}, CharsetCode charset = kCharsetSystem) const;
    bool CheckConsistency(std::string& report, std::int32_t maximum) const;

  private:
    enum class ActiveSource { Named, Primary, First };
    struct Language {
        std::u16string name;
        std::vector<std::string_view> texts;  // by the places of keys; one that is none lies nowhere
    };

    void requireLoading() const;
    void requireNotLoading() const;
    std::optional<std::size_t> placeOf(std::u16string_view language) const;
    bool knowsLanguage(std::u16string_view name) const { return placeOf(name).has_value(); }
    std::string_view storedText(std::optional<std::size_t> language, std::optional<std::size_t> key) const;
    std::u16string_view activeLanguage() const;
    ActiveSource settledSource(std::u16string_view active, std::u16string_view primary) const;
    Language& currentEntry();
    std::size_t placeOfCurrentKey();

    KeyTable keys_;
    TextPool pool_;                    // of all keys and texts; what was replaced stays in it
    std::vector<Language> languages_;  // in the order in which they were first met, each exactly once
    std::u16string active_;            // in use as long as the source is Named
    ActiveSource activeSource_ = ActiveSource::Named;
    std::optional<std::size_t> activePlace_;  // of the active language, once it has been looked up
    std::u16string primary_;
    std::string_view currentKey_;  // in the pool
    std::u16string currentLanguage_;
    std::optional<std::size_t> currentPlace_;  // of the current language, once it has been looked up
    std::size_t lastKey_ = 0;                  // the place of the key of the last text
    std::size_t expectedKeys_ = 0;             // in the next language that is new
    State state_ = State::Empty;
    NotFoundMode notFoundMode_ = NotFoundMode::UsePrimary;
};

}  // namespace owlkit
