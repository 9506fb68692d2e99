#include "lang/language_reader.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/stream/text_units.h"
#include "foundation/text/text.h"

namespace owlkit {
namespace {

constexpr std::size_t kSampleSize = 2048;
constexpr std::uint32_t kNotRead = 0xFFFFFFFF;
constexpr std::size_t kUsualEntry = 64;          // bytes of a key and its text in a file
constexpr std::size_t kMostExpected = 1u << 17;  // keys; a file of comments is to reserve no more
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Goes through the places of a byte in a text: sixteen bytes at a time, as the C library of Windows does not
// look for it.
class Places {
  public:
    Places(char byte, std::string_view text) : text_(text), byte_(byte) {}

    // The next one, from the first on; behind the last the size of the text.
    std::size_t next() {
        const __m128i wanted = _mm_set1_epi8(byte_);
        for (; found_ == 0 && text_.size() - looked_ >= sizeof wanted; looked_ += sizeof wanted) {
            const auto* const bytes = reinterpret_cast<const __m128i*>(text_.data() + looked_);
            found_ = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(bytes), wanted)));
        }
        if (found_ != 0) {
            const auto place = static_cast<std::size_t>(std::countr_zero(found_));
            found_ &= found_ - 1;
            return looked_ - sizeof wanted + place;
        }
        while (looked_ < text_.size() && text_[looked_] != byte_)
            ++looked_;
        return looked_ < text_.size() ? looked_++ : looked_;
    }

  private:
    std::string_view text_;
    char byte_;
    std::size_t looked_ = 0;
    unsigned found_ = 0;  // in the sixteen bytes before `looked_`
};

std::u16string wide(std::string_view text) {
    return ToWide(text, kCharsetUtf8);
}

bool isComment(std::string_view line) {
    return line.starts_with('#') || line.starts_with("//");
}

// A record's text as it grows: a part of the file until it is continued.
class Pending {
  public:
    std::string_view text() const { return text_; }
    bool empty() const { return text_.empty(); }
    void set(std::string_view text) { text_ = text; }
    void append(std::string_view line) {
        if (text_.data() != joined_.data())
            joined_ = text_;
        joined_ += ' ';
        joined_ += line;
        text_ = joined_;
    }
    // Where it stays: a joined one goes into `pool`.
    std::string_view take(TextPool& pool) {
        if (text_.data() == joined_.data())
            text_ = pool.keep(text_);
        return std::exchange(text_, {});
    }

  private:
    std::string_view text_;
    std::string joined_;
};

// The grammar of language files, fed one line at a time. The lines lie in the pool of the table.
class LanguageFileReader {
  public:
    LanguageFileReader(interlang& table, ReadObserver* observer) : table_(table), observer_(observer) {}

    // See readLanguages().
    bool read(ByteStream& stream, std::uint32_t& line);

  private:
    enum class Record { None, Key, Language, Text };

    // False on a syntax error. `atEnd` tells that this is the last line.
    bool line(std::string_view text, std::uint32_t number, bool atEnd) {
        text = trim(text);
        number_ = number;
        if (text.empty() || isComment(text))
            tell(text.empty() ? LineKind::Blank : LineKind::Comment, text);
        else if (!record(text))
            return false;
        return last_ == Record::None || commit(atEnd);
    }

    void tell(LineKind kind, std::string_view content) {
        if (observer_ != nullptr)
            observer_->line(number_, kind, wide(content));
    }

    bool fail(SyntaxRule rule) {
        if (observer_ != nullptr)
            observer_->failed(rule);
        return false;
    }

    bool record(std::string_view text) {
        if (text.starts_with("KEY:"))
            return keyRecord(trimLeft(text.substr(4)));
        if (text.starts_with("LANG:"))
            return languageRecord(trimLeft(text.substr(5)));
        if (text.starts_with("TEXT:"))
            return textRecord(trimLeft(text.substr(5)));
        return continuation(text);
    }

    bool keyRecord(std::string_view payload) {
        tell(LineKind::Key, payload);
        if (!key_.empty())
            return fail(SyntaxRule::KeyAfterKey);
        table_.prefetchKey(payload);
        key_.set(payload);
        last_ = Record::Key;
        return true;
    }

    bool languageRecord(std::string_view payload) {
        tell(LineKind::Language, payload);
        language_ = payload;
        last_ = Record::Language;
        return true;
    }

    bool textRecord(std::string_view payload) {
        tell(LineKind::Text, payload);
        if (textPending_)
            return fail(SyntaxRule::TextAfterText);
        text_.set(payload);
        textPending_ = true;
        textLine_ = number_;
        last_ = Record::Text;
        return true;
    }

    bool continuation(std::string_view text) {
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
            table_.SetLanguage(wide(std::exchange(language_, {})));
        return true;
    }

    void takeKey() {
        if (!key_.empty())
            table_.setKeptKey(key_.take(table_.pool()));
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
            observer_->stored(
                {textLine_, wide(table_.currentKey()), table_.currentLanguage(), wide(text_.text())});
        const std::string_view text = text_.take(table_.pool());
        if (Places('\\', text).next() == text.size())
            table_.addKeptText(text);
        else
            table_.AddText(wide(text));
        return true;
    }

    interlang& table_;
    ReadObserver* observer_;
    std::uint32_t number_ = 0;
    Record last_ = Record::None;
    Pending key_;                // while not empty
    std::string_view language_;  // pending while not empty
    Pending text_;
    bool textPending_ = false;  // a pending text may be empty
    std::uint32_t textLine_ = 0;
};

// What remains of a stream, as UTF-8 that comes back from ToWide.
struct Content {
    std::string_view text;
    bool cut = false;  // the end cuts a unit, which then counts as a line's last
};

// Nearly all files are UTF-8 that can stay as it is; of any other `bytes` the text is written as UTF-8.
bool decodeContent(std::string_view bytes, const StreamSettings& settings, TextPool& pool, Content& content) {
    MemoryStream rest(bytes.data(), bytes.size());
    rest.setSettings(settings);
    if (!rest.detectTextEncoding(kSampleSize))
        return false;
    const TextFormat format = {rest.textEncoding(), rest.charset(), rest.byteOrder() == ByteOrder::BigEndian};
    bytes.remove_prefix(static_cast<std::size_t>(rest.position()));
    content.text = pool.keep(ToNarrow(decodeUnits(bytes, format), kCharsetUtf8));
    content.cut = bytes.size() % unitWidth(format, true) != 0;
    return true;
}

// False when the encoding or not all of it could be read. All is read before any is looked at: a read that
// fails once within a line and then goes on would otherwise make two lines of it.
bool readContent(ByteStream& stream, TextPool& pool, Content& content) {
    const std::int64_t left = stream.remaining();
    if (!stream.isReadable() || left > MemoryStream::kMaximumSize)
        return false;
    const auto size = static_cast<std::size_t>(left);
    auto bytes = std::make_unique_for_overwrite<char[]>(size);
    if (stream.read(bytes.get(), size) != size)
        return false;
    const std::string_view text(bytes.get(), size);
    if (!comesBackFromWide(text))
        return decodeContent(text, stream.settings(), pool, content);
    pool.takeOver(std::move(bytes));
    content.text = text.substr(text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0);
    return true;
}

bool LanguageFileReader::read(ByteStream& stream, std::uint32_t& line) {
    Content content;
    if (!readContent(stream, table_.pool(), content)) {
        line = kNotRead;
        return false;
    }
    const std::string_view text = content.text;
    table_.expectKeys(std::min(text.size() / kUsualEntry, kMostExpected));
    Places ends('\n', text);
    for (std::size_t start = 0; start < text.size() || content.cut;) {
        ++line;
        const std::size_t end = ends.next();
        content.cut = content.cut && end != text.size();
        const bool isLast = end + 1 >= text.size() && !content.cut;
        if (!this->line(text.substr(start, end - start), line, isLast))
            return false;
        start = end + 1;
    }
    return true;
}

}  // namespace

bool readLanguages(interlang& table, ByteStream& stream, std::uint32_t& line, ReadObserver* observer) {
    if (table.state() != interlang::State::Loading)
        throwInvalidState();
    line = 0;
    return LanguageFileReader(table, observer).read(stream, line);
}

}  // namespace owlkit
