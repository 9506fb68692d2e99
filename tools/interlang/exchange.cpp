#include "tools/interlang/exchange.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "foundation/text/text.h"
#include "tools/interlang/file_access.h"
#include "tools/interlang/hints.h"
#include "tools/interlang/lossless.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

std::string exchangeForm(std::u16string_view written) {
    return utf8(losslessForm(written, Medium::Exchange));
}

std::string dateText(long long secondsSince1970) {
    using namespace std::chrono;
    const sys_seconds time{seconds(secondsSince1970)};
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<minutes>(time - day));
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d+0000", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()));
    return text;
}

long long sourceDate(std::string_view epoch) {
    constexpr long long kEndOf9999 = 253402300799;
    long long seconds = 0;
    const auto [end, error] = std::from_chars(epoch.data(), epoch.data() + epoch.size(), seconds);
    if (error != std::errc() || end != epoch.data() + epoch.size() || seconds < 0 || seconds > kEndOf9999)
        throw Failure("SOURCE_DATE_EPOCH is no count of seconds: " + quoted(wide(epoch)));
    return seconds;
}

long long date(const std::u16string& language, const LanguageFiles& files, const Reference& reference) {
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH"))
        return sourceDate(epoch);
    long long latest = 0;
    for (const LanguageFile& file : files.files()) {
        if (std::ranges::find(file.languages, language) != file.languages.end())
            latest = std::max(latest, changeTime(file.path));
    }
    return latest != 0 ? latest : changeTime(reference.path);
}

// "# Last-Translator: ..." and the like of an opening comment.
void addFields(const std::vector<std::u16string>& opening, Exchange& exchange) {
    for (const std::u16string& line : opening) {
        const std::string text = utf8(line);
        for (const std::string_view field : kHeaderFields) {
            const std::string start = "# " + std::string(field) + ": ";
            if (text.starts_with(start))
                exchange.fields.emplace_back(field, text.substr(start.size()));
        }
    }
}

std::u16string fromUtf16(std::string_view bytes) {
    if (bytes.size() % 2 != 0)
        throw Failure("UTF-16 with half a character at its end");
    const std::size_t high = bytes.starts_with("\xFE\xFF") ? 0 : 1;
    std::u16string text;
    for (std::size_t at = 2; at < bytes.size(); at += 2)
        text += static_cast<char16_t>(static_cast<unsigned char>(bytes[at + high]) << 8 |
                                      static_cast<unsigned char>(bytes[at + 1 - high]));
    return text;
}

class Collector {
  public:
    Collector(const std::u16string& language, LanguageFiles& files, const Reference& reference)
        : reference_(reference) {
        files.setLanguages(language.empty() ? reference.code : language, {});
        hints_ = hints(files.table());
        for (const LanguageFile& file : files.files()) {
            if (const auto own = file.untranslated.find(language); own != file.untranslated.end())
                untranslated_.insert(own->second.begin(), own->second.end());
        }
        if (const Texts* texts = language.empty() ? nullptr : files.texts(language))
            texts_ = *texts;
    }

    std::vector<Unit> run() const {
        Texts keys = reference_.texts;
        keys.insert(texts_.begin(), texts_.end());
        std::vector<Unit> units;
        for (const auto& entry : keys)
            units.push_back(unit(entry.first));
        return units;
    }

  private:
    Unit unit(const std::u16string& key) const {
        Unit unit;
        unit.key = utf8(losslessKey(key));
        const auto source = reference_.texts.find(key);
        const bool known = source != reference_.texts.end();
        if (known)
            unit.source = exchangeForm(source->second.written);
        if (unit.source.empty())
            unit.source = unit.key;
        if (const auto lines = hints_.find(key); lines != hints_.end())
            unit.hints = lines->second;
        const auto text = texts_.find(key);
        if (text == texts_.end()) {
            if (const auto place = untranslated_.find(key); place != untranslated_.end())
                addNotes(place->second, unit);
            return unit;
        }
        addNotes(text->second, unit);
        if (known && isUntranslated(text->second, source->second))
            return unit;
        unit.target = exchangeForm(text->second.written);
        unit.fuzzy = known && isChanged(text->second, source->second);
        if (unit.fuzzy)
            unit.previous = exchangeForm(*text->second.source);
        return unit;
    }

    static void addNotes(const Text& text, Unit& unit) {
        for (const std::u16string& note : text.notes)
            unit.notes.push_back(utf8(note));
    }

    const Reference& reference_;
    std::map<std::u16string, std::vector<std::string>> hints_;
    Texts texts_, untranslated_;
};

}  // namespace

Exchange toExchange(const std::u16string& language, LanguageFiles& files, const Reference& reference) {
    Exchange exchange;
    exchange.source = utf8(reference.code);
    exchange.language = utf8(language);
    exchange.date = dateText(date(language, files, reference));
    exchange.units = Collector(language, files, reference).run();
    for (const LanguageFile& file : files.files()) {
        if (exchange.fields.empty() && std::ranges::find(file.languages, language) != file.languages.end())
            addFields(file.opening, exchange);
    }
    return exchange;
}

Exchange readExchange(const std::string& bytes) {
    std::string text = bytes;
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        text = utf8(fromUtf16(bytes));
    if (text.starts_with("\xEF\xBB\xBF"))
        text.erase(0, 3);
    const bool isXml = owlkit::trimLeft(std::string_view(text)).starts_with('<');
    return isXml ? readXliff(text) : readPo(text);
}

}  // namespace translators
