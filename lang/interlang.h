// The translation table: for every key its text in every language that the language files gave.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/charset/charset.h"

namespace owlkit {

class ByteStream;
class ReadObserver;

// What Find does when a key has no text in the language asked for.
enum class NotFoundMode : std::uint32_t {
    UsePrimary = 0,  // looks in the primary language, then gives the key itself
    GiveKey = 1,
    GiveNothing = 2,  // gives an empty text
    Throw = 3,        // std::runtime_error "interlang translation not found for key 'KEY'"
};

// Keys, language names and texts are compared by code unit, letter case included.
//
// The table is filled between BeginLoad and EndLoad and asked afterwards. "Loading" below marks operations
// that need the first, "built" those that need the second; called in the wrong state they throw
// std::logic_error "invalid state". A table into which nothing was ever loaded (empty) answers the built
// operations with nothing: false, 0, the key.
//
// Narrow forms convert at the boundary, with '?' for what cannot be converted: language names as ISO-8859-1,
// keys and texts in the system charset or in the one given.
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
    void SetLanguages(std::string_view active, std::string_view primary);

    // Whether setting these two between BeginLoad and EndLoad would change no answer. Writes nothing.
    bool UsesLanguages(std::u16string_view active, std::u16string_view primary) const;

    // Loading: where the next text goes. The language name is trimmed, the key is not.
    void SetKey(std::u16string_view key);
    void SetKey(std::string_view key, CharsetCode charset = kCharsetSystem);
    void SetLanguage(std::u16string_view name);
    void SetLanguage(std::string_view name);

    // Loading, with a current key and a current language: decodes the escapes of `text` (lang/escapes.h) and
    // stores it, in place of an earlier text of the same key and language.
    void AddText(std::u16string_view text);
    void AddText(std::string_view text, CharsetCode charset = kCharsetSystem);

    // Loading: reads a language file from the stream's position to its end. False on a syntax error or a
    // failed read, with the number of that line in `line` (0xFFFFFFFF when the stream could not be prepared);
    // what came before it stays in the table. After true, `line` is the number of lines. The stream's
    // settings are the same afterwards. An `observer` is told what is read (lang/read_observer.h).
    bool Parse(ByteStream& stream, std::uint32_t& line, ReadObserver* observer = nullptr);

    // Built: writes one language, or with an empty name all in the order of the language list. With a
    // reference language that exists, each entry is preceded by a comment with its text in that language.
    // Lines end as the stream's terminator setting says, with LF when it is none; without a text encoding it
    // is UTF-8. False when there is no language at all or a write failed; std::logic_error "invalid state"
    // for a language that does not exist.
    bool Write(ByteStream& out, std::u16string_view language = {}, std::u16string_view reference = {}) const;
    bool Write(ByteStream& out, std::string_view language, std::string_view reference = {}) const;

    // Built: what there is. The lists are replaced; the result is their length.
    bool HasLanguage(std::u16string_view name) const;
    bool HasLanguage(std::string_view name) const;
    std::size_t GetLanguages(
        std::vector<std::u16string>& names) const;  // in the order in which they were first met
    std::size_t GetLanguages(std::vector<std::string>& names) const;
    std::size_t GetKeys(std::vector<std::u16string>& keys) const;  // ascending
    std::size_t GetKeys(std::vector<std::string>& keys) const;

    // Built: whether there is a text; it, or what `mode` says, is put into `out` unless that is null.
    bool Find(std::u16string_view language, std::u16string_view key, NotFoundMode mode,
              std::u16string* out = nullptr) const;
    bool Find(std::string_view language, std::string_view key, NotFoundMode mode, std::string* out = nullptr,
              CharsetCode charset = kCharsetSystem) const;

    // Built: lookups in the given language, or in the active one when it is empty.
    std::u16string GetText(std::u16string_view key, std::u16string_view language = {}) const;
    std::string GetText(std::string_view key, std::string_view language = {},
                        CharsetCode charset = kCharsetSystem) const;
    bool HasText(std::u16string_view key, std::u16string_view language = {}) const;
    bool HasText(std::string_view key, std::string_view language = {},
                 CharsetCode charset = kCharsetSystem) const;

    // Built: GetText, then "%1" replaced everywhere by `first`, and in the result "%2" everywhere by
    // `second`.
    std::u16string GetTextWithArgs(std::u16string_view key, std::u16string_view first,
                                   std::u16string_view second = {}, std::u16string_view language = {}) const;
    std::string GetTextWithArgs(std::string_view key, std::string_view first, std::string_view second = {},
                                std::string_view language = {}, CharsetCode charset = kCharsetSystem) const;

    // Built: whether every key has a text in every language. `report` is replaced by one entry for each key
    // that has not, at most `maximum` of them (0 or less: all), then "More errors found, but report
    // truncated.".
    bool CheckConsistency(std::u16string& report, std::int32_t maximum) const;
    bool CheckConsistency(std::string& report, std::int32_t maximum) const;

  private:
    class Reader;
    class Writer;
    using Texts = std::map<std::u16string, std::u16string, std::less<>>;  // by language name
    enum class ActiveSource { Named, Primary, First };

    void requireLoading() const;
    void requireNotLoading() const;
    bool knowsLanguage(std::u16string_view name) const;
    const std::u16string* storedText(std::u16string_view language, std::u16string_view key) const;
    std::u16string_view activeLanguage() const;
    ActiveSource settledSource(std::u16string_view active, std::u16string_view primary) const;
    void store(std::u16string text);

    std::map<std::u16string, Texts, std::less<>> translations_;
    std::vector<std::u16string> languages_;  // every language of `translations_` exactly once
    std::u16string active_;                  // in use as long as the source is Named
    ActiveSource activeSource_ = ActiveSource::Named;
    std::u16string primary_;
    std::u16string currentKey_;
    std::u16string currentLanguage_;
    State state_ = State::Empty;
    NotFoundMode notFoundMode_ = NotFoundMode::UsePrimary;
};

}  // namespace owlkit
