#include "foundation/charset/convert.h"

#include <cstddef>
#include <iterator>
#include <limits>
#include <optional>
#include <type_traits>

#include "foundation/charset/conversion_runs.h"
#include "foundation/charset/single_byte_tables.h"
#include "foundation/errors.h"
#include "foundation/text/number.h"
#include "foundation/text/utf16.h"
#include "platform/locale.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kGb18030CodePage = 54936;
constexpr std::size_t kReserveDoubleAbove = 10;  // code units of UTF-8 output's source
constexpr std::ptrdiff_t kChunk = 2048;          // units that are converted before they are appended

// Collects the result and remembers failures.
template <class Char>
class Output {
  public:
    using View = std::basic_string_view<Char>;

    void reserve(std::size_t count) {
        if (count > text_.max_size())
            throwStringTooLong();
        text_.reserve(count);
    }
    void add(View units) {
        if (units.size() > text_.max_size() - text_.size())
            throwStringTooLong();
        text_.append(units);
    }
    void add(std::uint32_t unit) {
        const auto c = static_cast<Char>(unit);
        add(View(&c, 1));
    }
    void addHex(std::uint32_t value, std::int32_t width) {
        add('x');
        add(formatNumber<Char>(value, NumberFormat::UpperHex, width));
    }

    // The part of the policies that is the same in both directions: returns whether the conversion goes on.
    bool goesOn(ErrorPolicy policy) {
        failed = true;
        if (policy == ErrorPolicy::Empty)
            text_.clear();
        return policy != ErrorPolicy::Empty && policy != ErrorPolicy::Stop;
    }

    std::basic_string<Char> take() { return std::move(text_); }

    bool failed = false;

  private:
    std::basic_string<Char> text_;
};

// Writes what the policy asks for in place of an undecodable byte; returns whether the conversion goes on.
bool replaceByte(Output<char16_t>& out, std::uint8_t byte, CharsetCode charset, ErrorPolicy policy,
                 char16_t replacement) {
    if (!out.goesOn(policy))
        return false;
    switch (policy) {
        case ErrorPolicy::Replace:
            if (replacement != 0)
                out.add(replacement);
            break;
        case ErrorPolicy::Fixed:
            out.add(0xFFFD);
            break;
        case ErrorPolicy::Hex:
            out.addHex(byte, 2);
            break;
        case ErrorPolicy::KeepByte:
            out.add(0xDC00u + byte);
            break;
        case ErrorPolicy::Latin1:
            if (charset == kCharsetUtf8)
                out.add(byte);
            break;
        case ErrorPolicy::Stop:
        case ErrorPolicy::Empty:
            break;
    }
    return true;
}

// Appends runs of what `run` converts, until `in` comes to its end or to a unit that fails.
template <class In, class Char, class Run>
void addRuns(Output<Char>& out, const In*& in, const In* end, Run run) {
    using Unit = std::conditional_t<sizeof(Char) == 1, std::uint8_t, Char>;
    Unit chunk[kChunk];
    std::ptrdiff_t written = 0;
    do {
        Unit* to = chunk;
        run(in, end, to, chunk + kChunk);
        written = to - chunk;
        out.add({reinterpret_cast<const Char*>(chunk), static_cast<std::size_t>(written)});
    } while (in != end && kChunk - written < static_cast<std::ptrdiff_t>(kRunSlack));
}

template <class Run>
void decodeAll(Output<char16_t>& out, std::string_view text, CharsetCode charset, ErrorPolicy policy,
               char16_t replacement, Run run) {
    if (text.size() > std::size_t{kChunk})
        out.reserve(text.size());
    const auto* in = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::uint8_t* const end = in + text.size();
    while (in != end) {
        addRuns(out, in, end, run);
        if (in != end && !replaceByte(out, *in++, charset, policy, replacement))
            return;
    }
}

void decodeByTable(Output<char16_t>& out, std::string_view text, CharsetCode charset, ErrorPolicy policy,
                   char16_t replacement) {
    const SingleByteTable table(charset);
    decodeAll(out, text, charset, policy, replacement,
              [&](auto&&... ends) { decodeTableRun(table, ends...); });
}

void decodeByPlatform(Output<char16_t>& out, std::string_view text, ErrorPolicy policy) {
    if (text.size() > std::numeric_limits<std::int32_t>::max())
        throwStringTooLong();  // the platform counts in 32 bits
    std::optional<std::u16string> wide =
        platform::multiByteToWide(text, platform::kMultiByteErrorInvalidCharacters);
    if (!wide) {
        out.failed = true;
        if (policy != ErrorPolicy::Empty)
            wide = platform::multiByteToWide(text, 0);
    }
    if (wide)
        out.add(*wide);
}

// WideCharToMultiByte such that it fails where a character has no exact counterpart.
std::optional<std::string> strictByPlatform(std::u16string_view units) {
    // In these two the call takes neither the best-fit flag nor the question about the default character.
    const std::optional<std::uint32_t> codePage = platform::ansiCodePage();
    if (codePage == platform::kUtf8CodePage || codePage == kGb18030CodePage)
        return platform::wideToMultiByte(units, platform::kWideErrorInvalidCharacters, nullptr);
    bool usedDefault = false;
    std::optional<std::string> narrow =
        platform::wideToMultiByte(units, platform::kWideNoBestFitCharacters, &usedDefault);
    return usedDefault ? std::nullopt : narrow;
}

// Writes what the policy asks for in place of a character; returns whether the conversion goes on.
bool replaceCharacter(Output<char>& out, char32_t c, bool byPlatform, ErrorPolicy policy, char replacement) {
    if (!out.goesOn(policy))
        return false;
    switch (policy) {
        case ErrorPolicy::Replace:
            if (replacement != 0)
                out.add(static_cast<std::uint8_t>(replacement));
            break;
        case ErrorPolicy::Fixed:
            out.add(0x1A);
            break;
        case ErrorPolicy::Hex:
            // The platform's conversion marks every character that fails alike.
            out.addHex(byPlatform ? 0xFFFD : c, !byPlatform && c >= 0x10000 ? 6 : 4);
            break;
        case ErrorPolicy::KeepByte:
            if (c >= 0xDC00 && c <= 0xDCFF)
                out.add(c & 0xFF);
            break;
        case ErrorPolicy::Stop:
        case ErrorPolicy::Empty:
        case ErrorPolicy::Latin1:
            break;
    }
    return true;
}

// The character that [in, end) begins with; `in` moves behind it.
char32_t takeCharacter(const char16_t*& in, const char16_t* end) {
    const char32_t c = *in++;
    if (!isHighSurrogate(c) || in == end || !isLowSurrogate(*in))
        return c;
    return fromSurrogates(c, *in++);
}

template <class Run>
void encodeAll(Output<char>& out, std::u16string_view text, ErrorPolicy policy, char replacement, Run run) {
    const char16_t* in = text.data();
    const char16_t* const end = in + text.size();
    while (in != end) {
        addRuns(out, in, end, run);
        if (in != end && !replaceCharacter(out, takeCharacter(in, end), false, policy, replacement))
            return;
    }
}

void encodeUtf8(Output<char>& out, std::u16string_view text, ErrorPolicy policy, char replacement) {
    // Otherwise the bytes that ToWide kept would not come back.
    const bool keepBytes = policy == ErrorPolicy::KeepByte;
    encodeAll(out, text, policy, replacement, [&](auto&&... ends) { encodeUtf8Run(ends..., keepBytes); });
}

void encodeByTable(Output<char>& out, std::u16string_view text, CharsetCode charset, ErrorPolicy policy,
                   char replacement) {
    const SingleByteTable table(charset);
    encodeAll(out, text, policy, replacement, [&](auto&&... ends) { encodeTableRun(table, ends...); });
}

// Character by character, since the platform does not tell where the whole text failed.
void encodeByPlatform(Output<char>& out, std::u16string_view text, ErrorPolicy policy, char replacement) {
    const char16_t* in = text.data();
    const char16_t* const end = in + text.size();
    while (in != end) {
        const char16_t* const start = in;
        const char32_t c = takeCharacter(in, end);
        if (const std::optional<std::string> narrow = strictByPlatform({start, in}))
            out.add(*narrow);
        else if (!replaceCharacter(out, c, true, policy, replacement))
            return;
    }
}

// The charset that converts: the system's for kCharsetSystem, kCharsetPlatform where that is not one of the
// table.
CharsetCode resolved(CharsetCode charset) {
    if (charset >= kCharsetCount && charset != kCharsetPlatform)
        throwInvalidConversion();
    if (charset == kCharsetSystem)
        charset = systemCharset();
    return charset == kCharsetSystem ? kCharsetPlatform : charset;
}

}  // namespace

std::u16string ToWide(std::string_view text, CharsetCode charset, ErrorPolicy policy, char16_t replacement,
                      bool* failed) {
    charset = resolved(charset);
    Output<char16_t> out;
    if (charset == kCharsetPlatform)
        decodeByPlatform(out, text, policy);
    else if (charset == kCharsetUtf8)
        decodeAll(out, text, charset, policy, replacement, decodeUtf8Run);
    else
        decodeByTable(out, text, charset, policy, replacement);
    if (failed != nullptr)
        *failed = out.failed;
    return out.take();
}

std::string ToNarrow(std::u16string_view text, CharsetCode charset, ErrorPolicy policy, char replacement,
                     bool* failed) {
    charset = resolved(charset);
    Output<char> out;
    if (charset == kCharsetUtf8 && text.size() > kReserveDoubleAbove) {
        if (text.size() > std::numeric_limits<std::size_t>::max() / 2)
            throwStringTooLong();
        out.reserve(2 * text.size());
    }
    if (charset == kCharsetUtf8)
        encodeUtf8(out, text, policy, replacement);
    else if (charset != kCharsetPlatform)
        encodeByTable(out, text, charset, policy, replacement);
    else if (const std::optional<std::string> whole = strictByPlatform(text))
        out.add(*whole);
    else
        encodeByPlatform(out, text, policy, replacement);
    if (failed != nullptr)
        *failed = out.failed;
    return out.take();
}

void appendUtf8(std::u16string& text, std::string_view utf8) {
    const auto* in = reinterpret_cast<const std::uint8_t*>(utf8.data());
    const std::uint8_t* const end = in + utf8.size();
    char16_t chunk[256];
    for (char16_t* to = nullptr; in != end && to != chunk;) {
        to = chunk;
        decodeUtf8Run(in, end, to, std::end(chunk));
        text.append(chunk, to);
    }
}

bool comesBackFromWide(std::string_view bytes) {
    const auto* in = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::uint8_t* const end = in + bytes.size();
    passUtf8Run(in, end);
    return in == end;
}

}  // namespace owlkit
