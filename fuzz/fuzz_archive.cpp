// Any items written one after the other in any settings are read back in the same order, each with as many
// bytes as it was written with.
#include <cstring>
#include <functional>

#include "foundation/stream/memory_stream.h"
#include "fuzz/fuzz.h"

using fuzz::require;
using owlkit::MemoryStream;

namespace {

bool isLineFeed(std::uint32_t terminator) {
    return terminator == owlkit::kLf || terminator == owlkit::kCrLf || terminator == owlkit::kCrLfAlias;
}

// Whether `charset` holds the text.
bool holds(owlkit::CharsetCode charset, const std::u16string& text) {
    bool failed = false;
    const std::string narrow = owlkit::ToNarrow(text, charset, owlkit::ErrorPolicy::Stop, '?', &failed);
    return !failed && owlkit::ToWide(narrow, charset) == text;
}

// Whether the end of a text is found where it was written.
bool endsByItself(std::uint32_t terminator, const std::u16string& text) {
    if (terminator == owlkit::kNoTerminator || terminator > owlkit::kCrLfAlias)
        return false;
    const char16_t stop = isLineFeed(terminator) ? u'\n' : terminator == owlkit::kCr ? u'\r' : u'\0';
    // A line feed takes one carriage return before it along.
    return text.find(stop) == text.npos && (terminator != owlkit::kLf || !text.ends_with(u'\r'));
}

class Items {
  public:
    explicit Items(FuzzedDataProvider& input) : input_(input) {
        stream_.setTextEncoding(pick(owlkit::kEncodingCharset + 1));
        stream_.setByteOrder(pick(owlkit::kLittleEndian));
        stream_.setStringTerminator(pick(owlkit::kCrLfAlias + 1));
        stream_.setCharset(pick(owlkit::kCharsetDos850));
    }

    void writeAll() {
        while (input_.remaining_bytes() > 0) {
            const std::int64_t before = stream_.size();
            const std::size_t checks = checks_.size();
            const std::int64_t written = writeOne();
            require(stream_.size() - before == written);
            require(checks_.size() > checks || written == 0);
        }
    }

    void readAll() {
        require(stream_.seek(0, owlkit::kFromStart));
        for (const auto& check : checks_)
            check();
        require(stream_.atEnd());
    }

  private:
    std::uint32_t pick(std::uint32_t last) { return input_.ConsumeIntegralInRange<std::uint32_t>(0, last); }

    std::int64_t writeOne() {
        switch (pick(9)) {
            case 0:
                return number<int>([](auto& s, auto& v) { return s.writeInt32(v); },
                                   [](auto& s, auto& v) { return s.readInt32(v); });
            case 1:
                return number<unsigned>([](auto& s, auto& v) { return s.writeValue32(v); },
                                        [](auto& s, auto& v) { return s.readInt32(v); });
            case 2:
                return number<short>([](auto& s, auto& v) { return s.writeInt16(v); },
                                     [](auto& s, auto& v) { return s.readInt16(v); });
            case 3:
                return number<unsigned char>([](auto& s, auto& v) { return s.writeByte(v); },
                                             [](auto& s, auto& v) { return s.readByte(v); });
            case 4:
                return number<long long>([](auto& s, auto& v) { return s.writeInt64(v); },
                                         [](auto& s, auto& v) { return s.readInt64(v); });
            case 5:
                return number<double>([](auto& s, auto& v) { return s.writeFloating(v); },
                                      [](auto& s, auto& v) { return s.readFloating(v); });
            case 6:
                return number<float>([](auto& s, auto& v) { return s.writeFloating(v); },
                                     [](auto& s, auto& v) { return s.readFloating(v); });
            case 7:
                return raw();
            case 8:
                return narrowText();
            default:
                return wideText();
        }
    }

    template <class Value, class Write, class Read>
    std::int64_t number(Write write, Read read) {
        Value value{};
        const std::string bytes = input_.ConsumeBytesAsString(sizeof(value));
        std::memcpy(&value, bytes.data(), bytes.size());
        checks_.push_back([this, value, read] {
            Value again{};
            require(read(stream_, again) == sizeof(value));
            require(std::memcmp(&again, &value, sizeof(value)) == 0);
        });
        return static_cast<std::int64_t>(write(stream_, value));
    }

    std::int64_t raw() {
        const std::string bytes = text();
        const std::u16string wide = owlkit::ToWide(bytes, owlkit::kCharsetSystem);
        const std::size_t size = sizeof(std::uint32_t) + bytes.size();
        checks_.push_back([this, bytes, size] {
            std::string again;
            require(stream_.readRaw(again, static_cast<std::uint32_t>(bytes.size())) == size);
            require(again == bytes);
        });
        std::size_t written = stream_.writeRaw(std::string_view(bytes));
        require(written == size);
        if (holds(owlkit::kCharsetSystem, wide)) {
            written += stream_.writeRaw(std::u16string_view(wide));
            checks_.push_back([this, wide] {
                std::u16string again;
                stream_.readRaw(again, 0xFFFFFFFF);
                require(again == wide);
            });
        }
        return static_cast<std::int64_t>(written);
    }

    std::int64_t wideText() {
        const std::u16string wide = fuzz::wide(text());
        if (!endsByItself(stream_.stringTerminator(), wide) ||
            (stream_.textEncoding() == owlkit::kEncodingCharset && !holds(stream_.charset(), wide)))
            return 0;
        checkText(wide);
        return stream_.writeText(std::u16string_view(wide));
    }

    // Narrow text must also come through the system charset, unless it is kept as its bytes.
    std::int64_t narrowText() {
        const std::string bytes = text();
        const std::uint32_t encoding = stream_.textEncoding();
        const bool kept = encoding == owlkit::kEncodingNone || encoding > owlkit::kEncodingCharset;
        const std::u16string wide =
            kept ? std::u16string(bytes.begin(), bytes.end()) : owlkit::ToWide(bytes, owlkit::kCharsetSystem);
        if (!endsByItself(stream_.stringTerminator(), wide) ||
            (!kept && owlkit::ToNarrow(wide, owlkit::kCharsetSystem) != bytes) ||
            (encoding == owlkit::kEncodingCharset && !holds(stream_.charset(), wide)))
            return 0;
        checkText(bytes);
        return stream_.writeText(std::string_view(bytes));
    }

    template <class Text>
    void checkText(const Text& text) {
        checks_.push_back([this, text] {
            Text again;
            const std::int64_t units = stream_.readText(again);
            require(again == text);
            require(units > 0);
        });
    }

    std::string text() { return input_.ConsumeRandomLengthString(200); }

    FuzzedDataProvider& input_;
    MemoryStream stream_;
    std::vector<std::function<void()>> checks_;
};

// The mark of an encoding makes a reader find it again.
void mark(FuzzedDataProvider& input) {
    MemoryStream stream;
    stream.setTextEncoding(input.ConsumeIntegralInRange<std::uint32_t>(0, owlkit::kEncodingCharset));
    stream.setByteOrder(input.ConsumeIntegralInRange<std::uint32_t>(0, owlkit::kLittleEndian));
    const bool has =
        stream.textEncoding() >= owlkit::kEncodingUtf8 && stream.textEncoding() <= owlkit::kEncodingUtf32;
    require(stream.writeByteOrderMark() == has);
    stream.seek(0, owlkit::kFromStart);
    MemoryStream reader(stream.data(), static_cast<std::size_t>(stream.size()));
    require(reader.detectByteOrderMark() == has);
    const bool littleUtf32 =
        stream.textEncoding() == owlkit::kEncodingUtf32 && stream.byteOrder() != owlkit::kBigEndian;
    if (has && !littleUtf32) {
        require(reader.textEncoding() == stream.textEncoding());
        require(reader.atEnd());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    mark(input);
    Items items(input);
    items.writeAll();
    items.readAll();
    return 0;
}
