// The lowest layer of every stream: four format settings, and scalars and strings laid into bytes by them.
// There is no header, tag, name or padding: a reader asks for the items in the order in which they were
// written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/charset/charset.h"
#include "foundation/stream/settings.h"

namespace owlkit {

struct TextFormat;

// The virtual functions stand in a fixed order that is the same in every stream class; new ones go behind the
// last.
//
// A read gives the number of bytes it consumed, a write the number it wrote. A short count is no error: the
// item stays as far as it was filled. Errors of the storage below pass through unchanged.
//
// Of the forms for scalars and texts the extension itself needs readByte, writeInt32 and writeText alone; the
// others are promised surface.
class Archive {
  public:
    virtual ~Archive() = default;
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;

    // Takes the four settings of `other`.
    virtual void copySettings(const Archive& other);
    // Whether `other` makes the same bytes: native and little-endian order are one, and so are the two CR LF
    // values; the charset counts only under TextEncoding::Charset.
    virtual bool settingsCompatible(const Archive& other) const;
    virtual bool isOpen() const;
    virtual bool isSeekable() const;
    virtual ByteOrder byteOrder() const;
    virtual void setByteOrder(ByteOrder order);
    virtual StringTerminator stringTerminator() const;
    virtual void setStringTerminator(StringTerminator terminator);
    virtual TextEncoding textEncoding() const;
    virtual void setTextEncoding(TextEncoding encoding);
    virtual CharsetCode charset() const;
    virtual bool isReadable() const = 0;
    virtual bool isWritable() const = 0;
    virtual std::int64_t remaining() const = 0;  // bytes between the position and the end

    virtual std::size_t read(void* buffer, std::size_t count) = 0;
    // Copies `count` bytes (negative: all that remain) from here into `target`, by its copyFrom.
    virtual std::int64_t readInto(Archive& target, std::int64_t count);
    // 4 bytes, also where a long is wider; it is then sign- or zero-extended.
    virtual std::size_t readInt32(int& value);
    virtual std::size_t readInt32(unsigned& value);
    virtual std::size_t readInt32(long& value);
    virtual std::size_t readInt32(unsigned long& value);
    virtual std::size_t readInt16(short& value);
    virtual std::size_t readInt16(unsigned short& value);
    virtual std::size_t readByte(bool& value);  // any byte but 0 is true
    virtual std::size_t readByte(char& value);
    virtual std::size_t readByte(unsigned char& value);
    virtual std::size_t readUnit16(char16_t& value);
    virtual std::size_t readUnit16(Code16& value);
    virtual std::size_t readUnit32(char32_t& value);
    virtual std::size_t readUnit32(Code32& value);
    virtual std::size_t readInt64(long long& value);
    virtual std::size_t readInt64(unsigned long long& value);
    virtual std::size_t readFloating(double& value);
    virtual std::size_t readFloating(long double& value);  // the 8 bytes of a double
    virtual std::size_t readFloating(float& value);
    // A counted string: its length in bytes as a 32-bit value, then the bytes; the wide one in the system
    // charset. With fewer than 4 bytes left nothing is read. Throws "read string size too large" when the
    // length exceeds `maxLength`.
    virtual std::size_t readRaw(std::u16string& target, std::uint32_t maxLength);
    virtual std::size_t readRaw(std::string& target, std::uint32_t maxLength);
    // A text up to its terminator, the end of the stream or `maxCount` units of the encoding (negative: no
    // limit). Gives the number of units consumed, the terminator included; it is not stored.
    // StringTerminator::Lf and both CR LF values stop at LF and drop one CR before it. A unit that the end of
    // the stream cuts is consumed, but neither counted nor stored. What cannot be converted becomes '?'. A
    // narrow target gets the system charset.
    virtual std::int64_t readText(std::u16string& target, std::int64_t maxCount = -1);
    virtual std::int64_t readText(std::string& target, std::int64_t maxCount = -1);

    virtual std::size_t write(const void* buffer, std::size_t count) = 0;
    // Copies `count` bytes (negative: all that remain) of `source` to here in blocks of 65536 bytes, up to
    // the first short one. Gives the bytes written.
    virtual std::int64_t copyFrom(Archive& source, std::int64_t count);
    virtual std::size_t writeInt32(const int& value);
    virtual std::size_t writeInt32(const unsigned& value);
    virtual std::size_t writeInt32(const long& value);  // the low 4 bytes
    virtual std::size_t writeInt32(const unsigned long& value);
    virtual std::size_t writeInt16(const short& value);
    virtual std::size_t writeInt16(const unsigned short& value);
    virtual std::size_t writeByte(const unsigned char& value);
    virtual std::size_t writeValue8(std::uint8_t value);
    virtual std::size_t writeValue16(std::uint16_t value);
    virtual std::size_t writeValue32(std::uint32_t value);
    virtual std::size_t writeValue64(std::uint64_t value);
    virtual std::size_t writeInt64(const long long& value);
    virtual std::size_t writeFloating(const double& value);
    virtual std::size_t writeFloating(const float& value);
    // The counterparts of readRaw. "size error" for 0xFFFFFFFF bytes or more.
    virtual std::size_t writeRaw(std::u16string_view text);
    virtual std::size_t writeRaw(std::string_view text);
    // The counterparts of readText: text and terminator in one write, in the stream's encoding and without a
    // byte-order mark. Narrow text is taken as the system charset's. Give the bytes written.
    virtual std::int64_t writeText(std::u16string_view text);
    virtual std::int64_t writeText(std::string_view text);

    // Used under TextEncoding::Charset.
    void setCharset(CharsetCode charset) { charset_ = charset; }

    // All settings at once, to be kept and put back.
    StreamSettings settings() const { return {byteOrder(), stringTerminator(), textEncoding(), charset()}; }
    void setSettings(const StreamSettings& settings);

  protected:
    Archive() = default;
    void swapArchive(Archive& other) noexcept;

    // Bytes that follow the position and that the storage holds in memory already: readText takes them from
    // here and moves `ahead_`, so a storage that fills this must reckon its position from what is left. May
    // always be empty.
    const std::uint8_t* ahead_ = nullptr;
    const std::uint8_t* aheadEnd_ = nullptr;
    std::size_t aheadCount() const { return static_cast<std::size_t>(aheadEnd_ - ahead_); }

  private:
    template <class T>
    std::size_t readScalar(T& value);
    template <class Stored, class T>
    std::size_t readAs(T& value);
    template <class T>
    std::size_t writeScalar(T value);
    TextFormat textFormat() const;
    std::int64_t readUnits(std::string& bytes, std::size_t width, std::int64_t maxCount);
    std::int64_t writeUnits(std::string bytes, std::size_t width);

    ByteOrder byteOrder_ = ByteOrder::Native;
    StringTerminator stringTerminator_ = StringTerminator::None;
    TextEncoding textEncoding_ = TextEncoding::None;
    CharsetCode charset_ = kCharsetSystem;
};

}  // namespace owlkit
