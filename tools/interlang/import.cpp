#include "tools/interlang/import.h"

#include <algorithm>
#include <set>

#include "foundation/text/text.h"
#include "tools/interlang/comments.h"
#include "tools/interlang/layout.h"
#include "tools/interlang/lossless.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

std::string exchangeForm(std::u16string_view written) {
    return utf8(losslessForm(written, Medium::Exchange));
}

// Notes as comment lines; those that would mean something else become plain ones.
std::vector<std::u16string> commentLines(const std::vector<std::string>& notes) {
    constexpr std::u16string_view kMarks = u",>~";
    std::vector<std::u16string> lines;
    for (const std::string& note : notes) {
        std::u16string rest = wide(note) + u'\n';
        for (std::size_t end = rest.find(u'\n'); end != rest.npos; end = rest.find(u'\n')) {
            const std::u16string line(owlkit::trim(std::u16string_view(rest).substr(0, end)));
            const bool special =
                line.starts_with(u'#') && line.size() > 1 && kMarks.find(line[1]) != kMarks.npos;
            const bool plain = line.empty() || line.starts_with(u'#') || line.starts_with(u"//");
            lines.push_back(plain && !special ? line : u"# " + line);
            rest.erase(0, end + 1);
        }
    }
    return withoutLayout(lines);
}

class Importer {
  public:
    Importer(LanguageFile file, const Exchange& exchange, Reference reference, bool replace)
        : file_(std::move(file)),
          reference_(std::move(reference)),
          language_(wide(exchange.language)),
          compared_(!reference_.texts.empty()) {
        if (std::ranges::find(file_.languages, language_) == file_.languages.end())
            file_.languages.push_back(language_);
        if (replace)
            file_.texts[language_].clear();
        const Texts& texts = file_.texts[language_];
        result_.kept = static_cast<std::size_t>(
            std::ranges::count_if(texts, [](const auto& entry) { return !entry.second.text.empty(); }));
        for (const auto& [key, text] : reference_.texts)
            bySource_[exchangeForm(text.written)].push_back(key);
    }

    Imported run(const Exchange& exchange) {
        for (const Unit& unit : exchange.units)
            take(unit);
        addFields(exchange);
        if (file_.texts[language_].empty() && result_.taken == 0)
            throw Failure("no translated texts");
        result_.bytes = layOutFile(file_, reference_);
        return std::move(result_);
    }

  private:
    void take(const Unit& unit) {
        const bool finished = unit.target && !unit.fuzzy;
        const std::u16string key = resolve(unit, finished);
        if (finished && !met_.insert(key).second)
            throw Failure("two texts for " + quoted(key));
        if (!compared_ && unit.source != unit.key)
            reference_.texts.insert_or_assign(key, fromExchange(unit.source));
        if (finished)
            return store(key, unit);
        if (unit.target)
            ++result_.fuzzy;
        auto& texts = file_.texts[language_];
        Text& place = texts.contains(key) ? texts[key] : file_.untranslated[language_][key];
        takeNotes(unit, place);
    }

    // The unit's key, or the one known key with its source.
    std::u16string resolve(const Unit& unit, bool finished) {
        const std::u16string key = decoded(wide(unit.key));
        if (!compared_ || reference_.texts.contains(key) || file_.texts[language_].contains(key))
            return key;
        const auto found = bySource_.find(unit.source);
        if (found != bySource_.end() && found->second.size() == 1)
            return found->second.front();
        if (finished)
            result_.warnings.push_back(
                quoted(key) + ": no such key in " + utf8(reference_.code) +
                (found == bySource_.end() ? "" : ", and several texts are its source"));
        return key;
    }

    void store(const std::u16string& key, const Unit& unit) {
        Texts& texts = file_.texts[language_];
        const bool wasThere = texts.contains(key) && !texts[key].text.empty();
        result_.kept -= wasThere ? 1 : 0;
        ++result_.taken;
        auto& places = file_.untranslated[language_];
        if (const auto place = places.find(key); place != places.end()) {
            texts[key] = std::move(place->second);
            places.erase(place);
        }
        Text& text = texts[key];
        const Text fresh = fromExchange(*unit.target);
        text.written = fresh.written;
        text.text = fresh.text;
        const auto other = reference_.texts.find(key);
        text.meantEmpty =
            text.text.empty() && (other == reference_.texts.end() || !other->second.text.empty());
        takeNotes(unit, text);
        if (unit.source != unit.key)
            text.source = owlkit::encodeEscapes(losslessForm(wide(unit.source), Medium::LanguageFile));
        if (compared_ && other != reference_.texts.end() && isChanged(text, other->second))
            result_.warnings.push_back(utf8(key) + ": translated from " + quoted(*text.source) + "; " +
                                       utf8(reference_.code) + " is " + quoted(other->second.text));
    }

    static void takeNotes(const Unit& unit, Text& text) {
        if (std::vector<std::u16string> lines = commentLines(unit.notes); !lines.empty())
            text.notes = std::move(lines);
    }

    static Text fromExchange(const std::string& form) {
        Text text;
        text.written = wide(form);
        text.text = decoded(text.written);
        return text;
    }

    // Who translates stands in the opening comment.
    void addFields(const Exchange& exchange) {
        for (const auto& [name, content] : exchange.fields) {
            const std::u16string start = u"# " + wide(name) + u": ";
            const auto place = std::ranges::find_if(
                file_.opening, [&](const std::u16string& line) { return line.starts_with(start); });
            if (place != file_.opening.end())
                *place = start + wide(content);
            else
                file_.opening.insert(file_.opening.begin(), start + wide(content));
        }
    }

    LanguageFile file_;
    Reference reference_;
    std::u16string language_;
    bool compared_;
    std::map<std::string, std::vector<std::u16string>> bySource_;
    std::set<std::u16string> met_;  // keys with finished targets
    Imported result_;
};

}  // namespace

Imported importInto(LanguageFile file, const Exchange& exchange, Reference reference, bool replace) {
    return Importer(std::move(file), exchange, std::move(reference), replace).run(exchange);
}

}  // namespace translators
