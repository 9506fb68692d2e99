#include "lang/language_reader.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "foundation/errors.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/stream/text_units.h"
#include "foundation/text/text.h"

namespace owlkit {
namespace {

constexpr std::size_t kSampleSize = 2048;
constexpr std::uint32_t kNotRead = 0xFFFFFFFF;

bool isComment(std::u16string_view line) {
    return line.starts_with(u'#') || line.starts_with(u"//");
}

// A record's text as it grows: a part of the file until it is continued.
class Pending {
  public:
    std::u16string_view text() const { return text_; }
    bool empty() const { return text_.empty(); }
    void set(std::u16string_view text) { text_ = text; }
    void append(std::u16string_view line) {
        if (text_.data() != joined_.data())
            joined_ = text_;
        joined_ += u' ';
        joined_ += line;
        text_ = joined_;
    }
    std::u16string_view take() { return std::exchange(text_, {}); }

  private:
    std::u16string_view text_;
    std::u16string joined_;
};

// The grammar of language files, fed one line at a time. Lines must stay where they are.
class Reader {
  public:
    Reader(interlang& table, ReadObserver* observer) : table_(table), observer_(observer) {}

    // False on a syntax error. `atEnd` tells that this is the last line.
    bool line(std::u16string_view text, std::uint32_t number, bool atEnd) {
        text = trim(text);
        number_ = number;
        if (text.empty() || isComment(text))
            tell(text.empty() ? LineKind::Blank : LineKind::Comment, text);
        else if (!record(text))
            return false;
        return last_ == Record::None || commit(atEnd);
    }

  private:
    enum class Record { None, Key, Language, Text };

    void tell(LineKind kind, std::u16string_view content) {
        if (observer_ != nullptr)
            observer_->line(number_, kind, content);
    }

    bool fail(SyntaxRule rule) {
        if (observer_ != nullptr)
            observer_->failed(rule);
        return false;
    }

    bool record(std::u16string_view text) {
        if (text.starts_with(u"KEY:"))
            return keyRecord(trimLeft(text.substr(4)));
        if (text.starts_with(u"LANG:"))
            return languageRecord(trimLeft(text.substr(5)));
        if (text.starts_with(u"TEXT:"))
            return textRecord(trimLeft(text.substr(5)));
        return continuation(text);
    }

    bool keyRecord(std::u16string_view payload) {
        tell(LineKind::Key, payload);
        if (!key_.empty())
            return fail(SyntaxRule::KeyAfterKey);
        key_.set(payload);
        last_ = Record::Key;
        return true;
    }

    bool languageRecord(std::u16string_view payload) {
        tell(LineKind::Language, payload);
        language_ = payload;
        last_ = Record::Language;
        return true;
    }

    bool textRecord(std::u16string_view payload) {
        tell(LineKind::Text, payload);
        if (textPending_)
            return fail(SyntaxRule::TextAfterText);
        text_.set(payload);
        textPending_ = true;
        textLine_ = number_;
        last_ = Record::Text;
        return true;
    }

    bool continuation(std::u16string_view text) {
        tell(LineKind::Continuation, text);
        if (last_ != Record::Key && last_ != Record::Text)
            return fail(SyntaxRule::NothingToContinue);
        Pending& continued = last_ == Record::Key ? key_ : text_;
        if (continued.empty())
            return fail(SyntaxRule::ContinuesEmptyRecord);
        continued.append(text);
        return true;
    }

    // A text belongs to the key above it; a key below it, still pending because it may be continued, begins
    // the next entry, so the text is stored before that key becomes current.
    bool commit(bool atEnd) {
        if (last_ == Record::Text)
            takeKey();
        if ((last_ != Record::Text || atEnd) && !storeText())
            return false;
        if (last_ == Record::Key && !atEnd)
            return true;
        takeKey();
        if (last_ == Record::Language && !language_.empty())
            table_.SetLanguage(std::exchange(language_, {}));
        return true;
    }

    void takeKey() {
        if (!key_.empty())
            table_.SetKey(key_.take());
    }

    bool storeText() {
        if (!textPending_)
            return true;
        if (table_.currentKey().empty())
            return fail(SyntaxRule::NoKey);
        if (table_.currentLanguage().empty())
            return fail(SyntaxRule::NoLanguage);
        textPending_ = false;
        if (observer_ != nullptr)
            observer_->stored({textLine_, table_.currentKey(), table_.currentLanguage(), text_.text()});
        table_.AddText(text_.take());
        return true;
    }

    interlang& table_;
    ReadObserver* observer_;
    std::uint32_t number_ = 0;
    Record last_ = Record::None;
    Pending key_;                   // while not empty
    std::u16string_view language_;  // pending while not empty
    Pending text_;
    bool textPending_ = false;  // a pending text may be empty
    std::uint32_t textLine_ = 0;
};

// What remains of a stream, decoded.
struct Content {
    std::u16string text;
    bool cut = false;  // the end cuts a unit, which then counts as a line's last
};

// False when the encoding or not all of it could be read. All is read before any is looked at: a read that
// fails once within a line and then goes on would otherwise make two lines of it.
bool readContent(ByteStream& stream, Content& content) {
    const std::int64_t left = stream.remaining();
    if (!stream.isReadable() || left > MemoryStream::kMaximumSize)
        return false;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(left));
    if (stream.read(bytes.data(), bytes.size()) != bytes.size())
        return false;
    MemoryStream rest(std::move(bytes));
    rest.setSettings(stream.settings());
    if (!rest.detectTextEncoding(kSampleSize))
        return false;
    const TextFormat format = {rest.textEncoding(), rest.charset(), rest.byteOrder() == ByteOrder::BigEndian};
    const auto size = static_cast<std::size_t>(rest.remaining());
    content.text = decodeUnits({reinterpret_cast<const char*>(rest.data() + rest.position()), size}, format);
    content.cut = size % unitWidth(format, true) != 0;
    return true;
}

}  // namespace

bool readLanguages(interlang& table, ByteStream& stream, std::uint32_t& line, ReadObserver* observer) {
    if (table.state() != interlang::State::Loading)
        throwInvalidState();
    line = 0;
    Content content;
    if (!readContent(stream, content)) {
        line = kNotRead;
        return false;
    }
    Reader reader(table, observer);
    std::u16string_view rest = content.text;
    while (!rest.empty() || content.cut) {
        ++line;
        const std::size_t end = rest.find(u'\n');
        const std::u16string_view text = rest.substr(0, end);
        content.cut = content.cut && end != rest.npos;
        rest = end == rest.npos ? std::u16string_view() : rest.substr(end + 1);
        if (!reader.line(text, line, rest.empty() && !content.cut))
            return false;
    }
    return true;
}

}  // namespace owlkit
