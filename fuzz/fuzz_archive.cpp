// Any texts written one after the other in any settings are read back in the same order, each with as many
// bytes as it was written with.
#include <functional>

#include "testing/fuzz.h"

using fuzz::require;
using owlkit::StringTerminator;
using owlkit::TextEncoding;

namespace {

class Texts {
  public:
    explicit Texts(FuzzedDataProvider& input) : input_(input) { stream_.setSettings(fuzz::settings(input)); }

    void writeAll() {
        while (input_.remaining_bytes() > 0) {
            const std::int64_t before = stream_.size();
            const std::int64_t written = input_.ConsumeBool() ? wideText() : narrowText();
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

    FuzzedDataProvider& input_;
    owlkit::MemoryStream stream_;
    std::vector<std::function<void()>> checks_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    Texts texts(input);
    texts.writeAll();
    texts.readAll();
    return 0;
}
