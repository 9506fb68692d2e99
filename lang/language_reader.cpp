#include <cstddef>
#include <utility>

#include "foundation/text/text.h"
#include "lang/interlang.h"
#include "lang/kept_settings.h"
#include "lang/read_observer.h"

namespace owlkit {
namespace {

constexpr std::size_t kSampleSize = 2048;
constexpr std::uint32_t kNotPrepared = 0xFFFFFFFF;

bool isComment(std::u16string_view line) {
    return line.starts_with(u'#') || line.starts_with(u"//");
}

}  // namespace

// The grammar of language files, fed one line at a time.
class interlang::Reader {
  public:
    Reader(interlang& table, ReadObserver* observer) : table_(table), observer_(observer) {}

    // False on a syntax error. `atEnd` tells that this is the last line.
    bool line(std::u16string_view text, std::uint32_t number, bool atEnd) {
        text = trim(text);
        number_ = number;
        if (text.empty() || isComment(text))
            tellOpening(text);
        else if (!record(text))
            return false;
        return last_ == Record::None || commit(atEnd);
    }

  private:
    enum class Record { None, Key, Language, Text };

    void tellOpening(std::u16string_view text) {
        if (observer_ != nullptr && last_ == Record::None)
            observer_->opening(text);
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
        if (!key_.empty())
            return false;
        key_ = payload;
        last_ = Record::Key;
        return true;
    }

    bool languageRecord(std::u16string_view payload) {
        language_ = payload;
        last_ = Record::Language;
        return true;
    }

    bool textRecord(std::u16string_view payload) {
        if (textPending_)
            return false;
        text_ = payload;
        textPending_ = true;
        textLine_ = number_;
        last_ = Record::Text;
        return true;
    }

    bool continuation(std::u16string_view text) {
        if (last_ != Record::Key && last_ != Record::Text)
            return false;
        std::u16string& continued = last_ == Record::Key ? key_ : text_;
        if (continued.empty())
            return false;
        continued += u' ';
        continued += text;
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
            table_.currentLanguage_ = std::exchange(language_, {});
        return true;
    }

    void takeKey() {
        if (!key_.empty())
            table_.currentKey_ = std::exchange(key_, {});
    }

    bool storeText() {
        if (!textPending_)
            return true;
        if (table_.currentKey_.empty() || table_.currentLanguage_.empty())
            return false;
        textPending_ = false;
        if (observer_ != nullptr)
            observer_->stored({textLine_, table_.currentKey_, table_.currentLanguage_, text_});
        table_.store(std::exchange(text_, {}));
        return true;
    }

    interlang& table_;
    ReadObserver* observer_;
    std::uint32_t number_ = 0;
    Record last_ = Record::None;
    std::u16string key_;       // pending while not empty
    std::u16string language_;  // pending while not empty
    std::u16string text_;
    bool textPending_ = false;  // a pending text may be empty
    std::uint32_t textLine_ = 0;
};

bool interlang::Parse(ByteStream& stream, std::uint32_t& line, ReadObserver* observer) {
    requireLoading();
    line = 0;
    const KeptSettings kept(stream);
    if (!stream.detectTextEncoding(kSampleSize)) {
        line = kNotPrepared;
        return false;
    }
    stream.setStringTerminator(kLf);
    Reader reader(*this, observer);
    std::u16string text;
    while (!stream.atEnd()) {
        ++line;
        const bool stuck = stream.readText(text) == 0 && !stream.atEnd();
        if (stuck || !reader.line(text, line, stream.atEnd()))
            return false;
    }
    return true;
}

}  // namespace owlkit
