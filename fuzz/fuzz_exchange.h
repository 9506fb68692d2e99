// What must hold of translations that come back from other programs.
#pragma once

#include "foundation/stream/memory_stream.h"
#include "lang/interlang.h"
#include "testing/fuzz.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/import.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace fuzz {

// What `read` gives, or nothing where it refuses the file.
template <class Read>
std::optional<translators::Exchange> exchangeOf(Read read) {
    try {
        return read();
    } catch (const translators::Failure& failure) {
        require(*failure.what() != '\0');
        return std::nullopt;
    }
}

inline void requireSameUnits(const translators::Exchange& a, const translators::Exchange& b) {
    require(a.units.size() == b.units.size());
    for (std::size_t i = 0; i < a.units.size(); ++i) {
        require(a.units[i].key == b.units[i].key);
        require(a.units[i].source == b.units[i].source);
        require(a.units[i].target == b.units[i].target);
        require(!a.units[i].target || a.units[i].fuzzy == b.units[i].fuzzy);
    }
}

inline void requireUtf8(const translators::Exchange& exchange) {
    for (const translators::Unit& unit : exchange.units) {
        require(translators::isUtf8(unit.key));
        require(translators::isUtf8(unit.source));
        require(!unit.target || translators::isUtf8(*unit.target));
    }
}

// A language file made of the translations holds each finished one, and no other, or none is made.
inline void requireImported(const translators::Exchange& exchange) {
    std::string bytes;
    try {
        bytes = translators::importInto({}, exchange, {}, true).bytes;
    } catch (const translators::Failure&) {
        return;
    }
    owlkit::MemoryStream file(bytes.data(), bytes.size(), false);
    owlkit::interlang table;
    std::uint32_t line = 0;
    table.BeginLoad();
    require(table.Parse(file, line));
    table.EndLoad();
    std::size_t finished = 0;
    for (const translators::Unit& unit : exchange.units) {
        if (!unit.target || unit.fuzzy)
            continue;
        ++finished;
        const std::u16string key = translators::decoded(translators::wide(unit.key));
        require(table.HasText(key, translators::wide(exchange.language)));
        require(table.GetText(key, translators::wide(exchange.language)) ==
                translators::decoded(translators::wide(*unit.target)));
    }
    std::vector<std::u16string> keys;
    require(table.GetKeys(keys) >= finished);
}

}  // namespace fuzz
