// Any items written one after the other in any settings are read back in the same order, each with as many
// bytes as it was written with.
#include <cstring>
#include <functional>

#include "foundation/stream/memory_stream.h"
#include "fuzz/fuzz.h"

using fuzz::require;
using owlkit::MemoryStream;

namespace {

bool isLineFeed(owlkit::StringTerminator terminator) {
    return terminator == owlkit::StringTerminator::Lf || terminator == owlkit::StringTerminator::CrLf ||
           terminator == owlkit::StringTerminator::CrLfAlias;
}

// Whether `charset` holds the text.
bool holds(owlkit::CharsetCode charset, const std::u16string& text) {
    bool failed = false;
    const std::string narrow = owlkit::ToNarrow(text, charset, owlkit::ErrorPolicy::Stop, '?', &failed);
    return !failed && owlkit::ToWide(narrow, charset) == text;
}

// Whether the end of a text is found where it was written.
bool endsByItself(owlkit::StringTerminator terminator, const std::u16string& text) {
    if (terminator == owlkit::StringTerminator::None || terminator > owlkit::StringTerminator::CrLfAlias)
        return false;
    const char16_t stop = isLineFeed(terminator)                       ? u'\n'
                          : terminator == owlkit::StringTerminator::Cr ? u'\r'
                                                                       : u'\0';
    // A line feed takes one carriage return before it along.
    return text.find(stop) == text.npos &&
           (terminator != owlkit::StringTerminator::Lf || !text.ends_with(u'\r'));
}

class Items {
  public:
    explicit Items(FuzzedDataProvider& input) : input_(input) {
        // Up to the first value that is none of a setting's own.
        stream_.setTextEncoding(owlkit::TextEncoding{pick(5)});
        stream_.setByteOrder(owlkit::ByteOrder{pick(2)});
        stream_.setStringTerminator(owlkit::StringTerminator{pick(6)});
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
        require(stream_.seek(0, owlkit::SeekOrigin::Start));
        for (const auto& check : checks_)
            check();
        require(stream_.atEnd());
    }

  private:
    std::uint32_t pick(std::uint32_t last) { return input_.ConsumeIntegralInRange<std::uint32_t>(0, last); }

    std::int64_t writeOne() {
        switch (pick(14)) {
            case 0:
                return number<int>([](auto& s, auto& v) { return s.writeInt32(v); }, read32);
            case 1:
                return number<unsigned>([](auto& s, auto& v) { return s.writeInt32(v); }, read32);
            case 2:
                return number<long, int>([](auto& s, auto& v) { return s.writeInt32(v); }, read32);
            case 3:
                return number<unsigned long, unsigned>([](auto& s, auto& v) { return s.writeInt32(v); },
                                                       read32);
            case 4:
                return number<unsigned>([](auto& s, auto& v) { return s.writeValue32(v); }, read32);
            case 5:
                return number<short>([](auto& s, auto& v) { return s.writeInt16(v); }, read16);
            case 6:
                return number<unsigned short>([](auto& s, auto& v) { return s.writeValue16(v); }, read16);
            case 7:
                return number<unsigned char>([](auto& s, auto& v) { return s.writeByte(v); },
                                             [](auto& s, auto& v) { return s.readByte(v); });
            case 8:
                return number<long long>([](auto& s, auto& v) { return s.writeInt64(v); }, read64);
            case 9:
                return number<unsigned long long>([](auto& s, auto& v) { return s.writeValue64(v); }, read64);
            case 10:
                return number<double>([](auto& s, auto& v) { return s.writeFloating(v); }, readFloating);
            case 11:
                return number<float>([](auto& s, auto& v) { return s.writeFloating(v); }, readFloating);
            case 12:
                return raw();
            case 13:
                return narrowText();
            default:
                return wideText();
        }
    }

    static constexpr auto read16 = [](auto& s, auto& v) { return s.readInt16(v); };
    static constexpr auto read32 = [](auto& s, auto& v) { return s.readInt32(v); };
    static constexpr auto read64 = [](auto& s, auto& v) { return s.readInt64(v); };
    static constexpr auto readFloating = [](auto& s, auto& v) { return s.readFloating(v); };

    // `Stored` is the form in which a wider `Value` lies in the stream.
    template <class Value, class Stored = Value, class Write, class Read>
    std::int64_t number(Write write, Read read) {
        Stored stored{};
        const std::string bytes = input_.ConsumeBytesAsString(sizeof(stored));
        std::memcpy(&stored, bytes.data(), bytes.size());
        const Value value = stored;
        checks_.push_back([this, value, read] {
            Value again{};
            require(read(stream_, again) == sizeof(Stored));
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
            (stream_.textEncoding() == owlkit::TextEncoding::Charset && !holds(stream_.charset(), wide)))
            return 0;
        checkText(wide);
        return stream_.writeText(std::u16string_view(wide));
    }

    // Narrow text must also come through the system charset, unless it is kept as its bytes.
    std::int64_t narrowText() {
        const std::string bytes = text();
        const owlkit::TextEncoding encoding = stream_.textEncoding();
        const bool kept = encoding == owlkit::TextEncoding::None || encoding > owlkit::TextEncoding::Charset;
        const std::u16string wide =
            kept ? std::u16string(bytes.begin(), bytes.end()) : owlkit::ToWide(bytes, owlkit::kCharsetSystem);
        if (!endsByItself(stream_.stringTerminator(), wide) ||
            (!kept && owlkit::ToNarrow(wide, owlkit::kCharsetSystem) != bytes) ||
            (encoding == owlkit::TextEncoding::Charset && !holds(stream_.charset(), wide)))
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
    stream.setTextEncoding(owlkit::TextEncoding{input.ConsumeIntegralInRange<std::uint32_t>(0, 4)});
    stream.setByteOrder(owlkit::ByteOrder{input.ConsumeIntegralInRange<std::uint32_t>(0, 2)});
    const bool has = stream.textEncoding() >= owlkit::TextEncoding::Utf8 &&
                     stream.textEncoding() <= owlkit::TextEncoding::Utf32;
    require(stream.writeByteOrderMark() == has);
    require(stream.seek(0, owlkit::SeekOrigin::Start));
    MemoryStream reader(stream.data(), static_cast<std::size_t>(stream.size()));
    require(reader.detectByteOrderMark() == has);
    const bool littleUtf32 = stream.textEncoding() == owlkit::TextEncoding::Utf32 &&
                             stream.byteOrder() != owlkit::ByteOrder::BigEndian;
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
