// The PO format of GNU gettext, as far as menu texts need it: no plural forms.
#include <algorithm>
#include <utility>

#include "foundation/text/text.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

constexpr std::string_view kEmptyMark = "#. The text is empty.";
constexpr std::string_view kEscapeLetters = "abfnrtv\\\"";
constexpr std::string_view kEscapedUnits = "\a\b\f\n\r\t\v\\\"";

// A string in quotes; one with line feeds inside goes over several lines, each on its own.
std::string quotedString(std::string_view text) {
    std::string lines = "\"";
    const bool several = text.find('\n') < text.size() - 1;
    if (several)
        lines += "\"\n\"";
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (const auto place = kEscapedUnits.find(text[at]); place != std::string_view::npos)
            lines.append({'\\', kEscapeLetters[place]});
        else
            lines += text[at];
        if (text[at] == '\n' && at + 1 < text.size())
            lines += "\"\n\"";
    }
    return lines + "\"\n";
}

std::string header(const Exchange& exchange, const std::string& date) {
    return "msgid \"\"\nmsgstr " + quotedString(
                                       "Project-Id-Version: menu texts\n"
                                       "PO-Revision-Date: " +
                                       date + "\n" +
                                       "Last-Translator: none\n"
                                       "Language-Team: none\n"
                                       "Language: " +
                                       exchange.language + "\n" +
                                       "MIME-Version: 1.0\n"
                                       "Content-Type: text/plain; charset=UTF-8\n"
                                       "Content-Transfer-Encoding: 8bit\n"
                                       "X-Source-Language: " +
                                       exchange.source + "\n");
}

struct Entry {
    std::optional<std::string> context, id, text;
    bool fuzzy = false;
    bool empty = false;  // marked as empty, not missing
};

class Reader {
  public:
    Exchange read(std::string_view bytes) {
        if (bytes.starts_with("\xEF\xBB\xBF"))
            bytes.remove_prefix(3);
        for (; !bytes.empty(); ++number_) {
            const std::size_t length = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
            if (!isUtf8(bytes.substr(0, length)))
                fail("bytes that are not UTF-8");
            line(owlkit::trim(bytes.substr(0, length)));
            bytes.remove_prefix(length);
        }
        finish();
        return std::move(exchange_);
    }

  private:
    [[noreturn]] void fail(const std::string& what) const {
        throw Failure("line " + std::to_string(number_) + ": " + what);
    }

    void line(std::string_view text) {
        if (text.empty())
            return;
        if (text.starts_with("#~")) {  // an entry that is obsolete, whose comments end with it
            finish();
            return;
        }
        if (text.starts_with('#')) {
            if (entry_.text)
                finish();
            entry_.fuzzy |= text.starts_with("#,") && text.find("fuzzy") != std::string_view::npos;
            entry_.empty |= text == kEmptyMark;
        } else if (text.starts_with('"')) {
            if (field_ == nullptr)
                fail("a string that belongs to nothing");
            appendString(text);
        } else if (!keyword(text, "msgctxt", entry_.context) && !keyword(text, "msgid", entry_.id) &&
                   !keyword(text, "msgstr", entry_.text)) {
            fail("not understood");
        }
    }

    bool keyword(std::string_view text, std::string_view name, std::optional<std::string>& field) {
        if (!text.starts_with(name))
            return false;
        const std::string_view rest = owlkit::trimLeft(text.substr(name.size()));
        if (!rest.starts_with('"'))
            return false;  // plural forms
        if (entry_.text)
            finish();
        if (field)
            fail(std::string(name) + " twice in one entry");
        field_ = &field.emplace();
        appendString(rest);
        return true;
    }

    void appendString(std::string_view text) {
        if (text.size() < 2 || !text.ends_with('"'))
            fail("a string without its end");
        text = text.substr(1, text.size() - 2);
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '"')
                fail("a quote within a string");
            if (text[at] != '\\') {
                *field_ += text[at];
                continue;
            }
            const auto place = ++at < text.size() ? kEscapeLetters.find(text[at]) : std::string_view::npos;
            if (place == std::string_view::npos)
                fail("an escape that is not understood");
            *field_ += kEscapedUnits[place];
        }
    }

    // Puts the entry away and begins the next.
    void finish() {
        const Entry entry = std::exchange(entry_, {});
        field_ = nullptr;
        if (!entry.context && !entry.id && !entry.text)
            return;
        if (!entry.id || !entry.text)
            fail("an entry without msgid or msgstr above");
        if (!entry.context && entry.id->empty())
            readHeader(*entry.text);
        else if (!entry.context)
            fail("an entry without msgctxt above");
        else
            addUnit(entry);
    }

    void addUnit(const Entry& entry) {
        Unit unit{*entry.context, *entry.id, {}};
        if (!entry.fuzzy && (entry.empty || !entry.text->empty()))
            unit.target = *entry.text;
        exchange_.units.push_back(std::move(unit));
    }

    void readHeader(const std::string& text) {
        exchange_.language = field(text, "\nLanguage:");
        exchange_.source = field(text, "\nX-Source-Language:");
        const std::string type = owlkit::toLowerAscii(field(text, "\nContent-Type:"));
        if (type.find("charset=utf-8") == std::string::npos)
            fail("the charset is not UTF-8");
    }

    static std::string field(const std::string& header, std::string_view name) {
        const std::string lines = '\n' + header;
        const std::size_t at = lines.find(name);
        if (at == std::string::npos)
            return {};
        const std::size_t start = at + name.size();
        return std::string(
            owlkit::trim(std::string_view(lines).substr(start, lines.find('\n', start) - start)));
    }

    Exchange exchange_;
    Entry entry_;
    std::string* field_ = nullptr;  // what a string line continues
    std::size_t number_ = 1;
};

}  // namespace

std::string writePo(const Exchange& exchange, const std::string& date) {
    std::string bytes = header(exchange, date);
    for (const Unit& unit : exchange.units) {
        bytes += '\n';
        if (unit.target && unit.target->empty())
            bytes.append(kEmptyMark).append("\n");
        bytes += "msgctxt " + quotedString(unit.key) + "msgid " + quotedString(unit.source) + "msgstr " +
                 quotedString(unit.target.value_or(""));
    }
    return bytes;
}

Exchange readPo(std::string_view bytes) {
    return Reader().read(bytes);
}

}  // namespace translators
