// The groups that base64 is made of: three bytes, four letters.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace owlkit {

inline constexpr std::uint8_t kBase64Padding = 64;  // in place of the value of a letter
inline constexpr std::uint8_t kNoBase64Letter = 65;

// An alphabet in both directions.
struct Base64Letters {
    std::string_view letters;               // of the 64 values
    std::array<std::uint8_t, 256> valueOf;  // kBase64Padding for "=", kNoBase64Letter for what is none
};
extern const Base64Letters kStandardLetters;
extern const Base64Letters kUrlLetters;

// Writes the four letters of each of `groups` groups of bytes; gives the end of what it wrote. Char is char
// or char16_t.
template <class Char>
Char* encodeBase64Groups(const Base64Letters& alphabet, const std::uint8_t* bytes, std::size_t groups,
                         Char* out);

// Writes the letters of one or two last bytes, without padding.
template <class Char>
Char* encodeBase64Rest(const Base64Letters& alphabet, const std::uint8_t* bytes, std::size_t count,
                       Char* out);

// Takes letters as they come and writes the bytes of every group as it becomes full. Char is std::uint8_t or
// char16_t.
class Base64Decoder {
  public:
    explicit Base64Decoder(const Base64Letters& alphabet) : alphabet_(alphabet) {}

    // Takes letters from the start of [in, end) and writes to `out`, which has room for three bytes for every
    // four letters begun. Stops behind padding that ends the text, before a character that is no letter, or
    // at the end.
    template <class Char>
    void take(const Char*& in, const Char* end, char*& out);

    bool ended() const { return ended_; }

    // Writes what a last group that is not full stands for.
    void finish(char*& out) const;

  private:
    template <class Char>
    void takeGroups(const Char*& in, const Char* end, char*& out) const;
    template <class Char>
    std::uint8_t valueOf(Char letter) const {
        return letter < 256 ? alphabet_.valueOf[static_cast<std::size_t>(letter)] : kNoBase64Letter;
    }

    const Base64Letters& alphabet_;
    std::uint32_t bits_ = 0;  // of the group
    int letters_ = 0;         // in the group
    bool ended_ = false;
};

}  // namespace owlkit
