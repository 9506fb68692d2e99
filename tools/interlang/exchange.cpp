#include "tools/interlang/exchange.h"

#include "tools/interlang/layout.h"
#include "tools/interlang/lossless.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

std::string exchangeForm(std::u16string_view written) {
    return utf8(losslessForm(written, Medium::Exchange));
}

Text fromExchangeForm(const std::string& form) {
    const std::u16string written = wide(form);
    return {written, decoded(written)};
}

}  // namespace

Exchange toExchange(std::u16string_view language, const Texts& texts, const Reference& reference) {
    Texts keys = reference.texts;
    keys.insert(texts.begin(), texts.end());
    Exchange exchange{utf8(reference.code), utf8(language), {}};
    for (const auto& entry : keys) {
        Unit unit{utf8(losslessKey(entry.first)), {}, {}};
        if (const auto source = reference.texts.find(entry.first); source != reference.texts.end())
            unit.source = exchangeForm(source->second.written);
        if (unit.source.empty())
            unit.source = unit.key;
        if (const auto target = texts.find(entry.first); target != texts.end())
            unit.target = exchangeForm(target->second.written);
        exchange.units.push_back(std::move(unit));
    }
    return exchange;
}

std::string toLanguageFile(const Exchange& exchange, const std::vector<std::u16string>& opening) {
    Texts texts;
    Reference reference{wide(exchange.source), {}, {}, {}};
    for (const Unit& unit : exchange.units) {
        const std::u16string key = decoded(wide(unit.key));
        if (unit.source != unit.key)
            reference.texts.insert_or_assign(key, fromExchangeForm(unit.source));
        if (unit.target && !texts.try_emplace(key, fromExchangeForm(*unit.target)).second)
            throw Failure("two texts for " + quoted(key));
    }
    if (texts.empty())
        throw Failure("no translated texts");
    return openingComment(opening) + layOut(wide(exchange.language), texts, reference);
}

}  // namespace translators
