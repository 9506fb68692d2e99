// The PO format of GNU gettext, as far as menu texts need it: no plural forms.
#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

#include "foundation/text/text.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

constexpr std::string_view kEmptyComment = "The text is empty.";
constexpr std::string_view kSpecialComments = ",:.~|";  // behind the #
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

std::string header(const Exchange& exchange) {
    std::string text = std::string("Project-Id-Version: nmshell ") + NMSHELL_VERSION + '\n';
    const auto field = [&](std::string_view name) {
        const auto found =
            std::ranges::find(exchange.fields, name, [](const auto& entry) { return entry.first; });
        text += std::string(name) + ": " + (found == exchange.fields.end() ? "" : found->second) + '\n';
    };
    field("Report-Msgid-Bugs-To");
    text += (exchange.language.empty() ? "POT-Creation-Date: " : "PO-Revision-Date: ") + exchange.date + '\n';
    field("Last-Translator");
    field("Language-Team");
    text += "Language: " + exchange.language +
            "\nMIME-Version: 1.0\n"
            "Content-Type: text/plain; charset=UTF-8\n"
            "Content-Transfer-Encoding: 8bit\n"
            "X-Source-Language: " +
            exchange.source + '\n';
    return "msgid \"\"\nmsgstr " + quotedString(text);
}

// A line of notes as a comment, from which noteOf makes the same again.
std::string noteComment(const std::string& note) {
    const bool plain = note.starts_with('#') &&
                       (note.size() == 1 || kSpecialComments.find(note[1]) == std::string_view::npos);
    return note.empty() ? "#" : plain ? note : "# " + note;
}

std::string noteOf(std::string_view comment) {
    if (comment == "#")
        return {};
    return std::string(comment.substr(comment.starts_with("# //") ? 2 : 0));
}

// Whether one of the words between commas is `flag`.
bool hasFlag(std::string_view words, std::string_view flag) {
    for (std::size_t end = words.find(','); end != std::string_view::npos; end = words.find(',')) {
        if (owlkit::trim(words.substr(0, end)) == flag)
            return true;
        words.remove_prefix(end + 1);
    }
    return owlkit::trim(words) == flag;
}

struct Entry {
    std::optional<std::string> context, id, text;
    std::vector<std::string> notes;
    bool fuzzy = false;
    bool empty = false;  // marked as empty, not missing
};

class Reader {
  public:
    Exchange read(std::string_view bytes) {
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
            comment(text);
        } else if (text.starts_with('"')) {
            if (field_ == nullptr)
                fail("a string that belongs to nothing");
            appendString(text);
        } else if (!keyword(text, "msgctxt", entry_.context) && !keyword(text, "msgid", entry_.id) &&
                   !keyword(text, "msgstr", entry_.text)) {
            fail("not understood");
        }
    }

    void comment(std::string_view text) {
        const bool special = text.size() > 1 && kSpecialComments.find(text[1]) != std::string_view::npos;
        if (text.starts_with("#,"))
            entry_.fuzzy |= hasFlag(text.substr(2), "fuzzy");
        else if (!special && owlkit::trim(text.substr(1)) == kEmptyComment)
            entry_.empty = true;
        else if (!special)
            entry_.notes.push_back(noteOf(text));
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

    // One string or several.
    void appendString(std::string_view text) {
        while (!text.empty()) {
            if (!text.starts_with('"'))
                fail("a quote within a string");
            std::size_t at = 1;
            while (at < text.size() && text[at] != '"')
                *field_ += text[at] == '\\' ? escape(text, at) : text[at++];
            if (at >= text.size())
                fail("a string without its end");
            text = owlkit::trimLeft(text.substr(at + 1));
        }
    }

    // The byte of the escape at `at`, which moves behind it: a letter, up to two hexadecimal digits after an
    // x, or up to three octal ones.
    char escape(std::string_view text, std::size_t& at) {
        const auto first = text.begin() + static_cast<std::ptrdiff_t>(std::min(at + 1, text.size()));
        const bool isHex = first != text.end() && *first == 'x';
        const auto digits = first + (isHex ? 1 : 0);
        const auto limit = std::min<std::ptrdiff_t>(isHex ? 2 : 3, text.end() - digits);
        unsigned value = 0;
        const auto end =
            std::from_chars(std::to_address(digits), std::to_address(digits + limit), value, isHex ? 16 : 8)
                .ptr;
        if (end != std::to_address(digits)) {
            at = static_cast<std::size_t>(end - text.data());
            return static_cast<char>(value);
        }
        const auto place = first == text.end() ? std::string_view::npos : kEscapeLetters.find(*first);
        if (place == std::string_view::npos)
            fail("an escape that is not understood");
        at += 2;
        return kEscapedUnits[place];
    }

    // Puts the entry away and begins the next.
    void finish() {
        const Entry entry = std::exchange(entry_, {});
        field_ = nullptr;
        if (!entry.context && !entry.id && !entry.text)
            return;
        if (!entry.id || !entry.text)
            fail("an entry without msgid or msgstr above");
        for (const auto* text : {&entry.context, &entry.id, &entry.text}) {
            if (*text && !isUtf8(**text))
                fail("escapes that give no UTF-8 above");
        }
        if (!entry.context && entry.id->empty())
            readHeader(*entry.text);
        else if (!entry.context)
            fail("an entry without msgctxt above");
        else
            addUnit(entry);
    }

    void addUnit(const Entry& entry) {
        Unit unit;
        unit.key = *entry.context;
        unit.source = *entry.id;
        unit.notes = entry.notes;
        unit.fuzzy = entry.fuzzy;
        if (entry.empty || !entry.text->empty())
            unit.target = *entry.text;
        exchange_.units.push_back(std::move(unit));
    }

    void readHeader(const std::string& text) {
        exchange_.language = field(text, "\nLanguage:");
        exchange_.source = field(text, "\nX-Source-Language:");
        for (const std::string_view name : kHeaderFields) {
            if (std::string content = field(text, '\n' + std::string(name) + ':'); !content.empty())
                exchange_.fields.emplace_back(name, std::move(content));
        }
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

std::string writePo(const Exchange& exchange) {
    std::string bytes = header(exchange);
    for (const Unit& unit : exchange.units) {
        bytes += '\n';
        for (const std::string& note : unit.notes)
            bytes += noteComment(note) + '\n';
        if (unit.target && unit.target->empty())
            bytes.append("# ").append(kEmptyComment).append("\n");
        for (const std::string& hint : unit.hints)
            bytes += "#. " + hint + '\n';
        if (unit.fuzzy)
            bytes += "#, fuzzy\n";
        if (unit.previous)
            bytes += owlkit::replaceAll("#| msgid " + quotedString(*unit.previous), "\n\"", "\n#| \"");
        bytes += "msgctxt " + quotedString(unit.key) + "msgid " + quotedString(unit.source) + "msgstr " +
                 quotedString(unit.target.value_or(""));
    }
    return bytes;
}

Exchange readPo(std::string_view bytes) {
    return Reader().read(bytes);
}

}  // namespace translators
