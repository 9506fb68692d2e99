// Any items written one after the other in any settings are read back in the same order, each with as many
// bytes as it was written with.
#include <cstring>
#include <functional>

#include "fuzz/fuzz.h"

using fuzz::require;
using owlkit::Archive;
using owlkit::StringTerminator;
using owlkit::TextEncoding;

namespace {

class Items {
  public:
    explicit Items(FuzzedDataProvider& input) : input_(input) { stream_.setSettings(fuzz::settings(input)); }

    void writeAll() {
        while (input_.remaining_bytes() > 0) {
            const std::int64_t before = stream_.size();
            const std::int64_t written = (this->*kKinds[fuzz::pick(input_, std::size(kKinds) - 1)])();
            require(stream_.size() - before == written);
        }
    }

    void readAll() {
        require(stream_.seek(0, owlkit::SeekOrigin::Start));
        for (const auto& check : checks_)
            check();
        require(stream_.atEnd());
    }

  private:
    // `Stored` is the form in which a wider `Value` lies in the stream.
    template <class Value, auto Write, std::size_t (Archive::*Read)(Value&), class Stored = Value>
    std::int64_t number() {
        Stored stored{};
        const std::string bytes = input_.ConsumeBytesAsString(sizeof(stored));
        std::memcpy(&stored, bytes.data(), bytes.size());
        const Value value = stored;
        checks_.push_back([this, value] {
            Value again{};
            require((stream_.*Read)(again) == sizeof(Stored));
            require(std::memcmp(&again, &value, sizeof(value)) == 0);
        });
        return static_cast<std::int64_t>(Write(stream_, value));
    }

    std::int64_t raw() {
        const std::string bytes = text();
        const std::u16string wide = owlkit::ToWide(bytes, owlkit::kCharsetSystem);
        checks_.push_back([this, bytes, wide] {
            std::string again;
            require(stream_.readRaw(again, static_cast<std::uint32_t>(bytes.size())) == 4 + bytes.size());
            require(again == bytes);
            std::u16string wideAgain;
            stream_.readRaw(wideAgain, 0xFFFFFFFF);
            require(wideAgain == throughCharset(wide, owlkit::kCharsetSystem));
        });
        const std::size_t written = stream_.writeRaw(std::string_view(bytes));
        return static_cast<std::int64_t>(written + stream_.writeRaw(std::u16string_view(wide)));
    }

    std::int64_t wideText() {
        std::u16string wide = fuzz::wide(text());
        if (stream_.textEncoding() == TextEncoding::Charset)
            wide = throughCharset(wide, stream_.charset());
        return checkedText(ending(wide));
    }

    // Narrow text goes through the system charset, unless it is kept as its bytes.
    std::int64_t narrowText() {
        const TextEncoding encoding = stream_.textEncoding();
        if (encoding == TextEncoding::None || encoding > TextEncoding::Charset)
            return checkedText(ending(text()));
        std::u16string wide = owlkit::ToWide(text(), owlkit::kCharsetSystem);
        if (encoding == TextEncoding::Charset)
            wide = throughCharset(wide, stream_.charset());
        return checkedText(owlkit::ToNarrow(ending(wide), owlkit::kCharsetSystem));
    }

    static std::u16string throughCharset(const std::u16string& text, owlkit::CharsetCode charset) {
        return owlkit::ToWide(owlkit::ToNarrow(text, charset), charset);
    }

    // The text without what would end it earlier; a line feed takes one carriage return before it along.
    template <class Text>
    Text ending(Text text) const {
        const StringTerminator terminator = stream_.stringTerminator();
        std::erase(text, terminator == StringTerminator::Nul  ? 0
                         : terminator == StringTerminator::Cr ? 13
                                                              : 10);
        while (!text.empty() && text.back() == 13)
            text.pop_back();
        return text;
    }

    template <class Text>
    std::int64_t checkedText(const Text& text) {
        const StringTerminator terminator = stream_.stringTerminator();
        if (terminator == StringTerminator::None || terminator > StringTerminator::CrLfAlias)
            return 0;  // it would take what follows along
        checks_.push_back([this, text] {
            Text again;
            require(stream_.readText(again) > 0);
            require(again == text);
        });
        return stream_.writeText(std::basic_string_view<typename Text::value_type>(text));
    }

    std::string text() { return input_.ConsumeRandomLengthString(200); }

    static constexpr auto write32 = [](Archive& s, const auto& v) { return s.writeInt32(v); };
    static constexpr auto write64 = [](Archive& s, const auto& v) { return s.writeInt64(v); };
    static constexpr auto writeFloating = [](Archive& s, const auto& v) { return s.writeFloating(v); };
    static constexpr auto value16 = [](Archive& s, const auto& v) { return s.writeValue16(v); };

    static constexpr std::int64_t (Items::*kKinds[])() = {
        &Items::number<int, write32, &Archive::readInt32>,
        &Items::number<unsigned long, write32, &Archive::readInt32, unsigned>,
        &Items::number<unsigned short, value16, &Archive::readInt16>,
        &Items::number<long long, write64, &Archive::readInt64>,
        &Items::number<float, writeFloating, &Archive::readFloating>,
        &Items::raw,
        &Items::narrowText,
        &Items::wideText,
    };

    FuzzedDataProvider& input_;
    owlkit::MemoryStream stream_;
    std::vector<std::function<void()>> checks_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    Items items(input);
    items.writeAll();
    items.readAll();
    return 0;
}
