// What goes through the whole table, which the extension itself never does.
#include <algorithm>

#include "foundation/charset/convert.h"
#include "lang/consistency.h"
#include "lang/interlang.h"
#include "lang/language_writer.h"

namespace owlkit {

std::size_t interlang::GetLanguages(std::vector<std::u16string>& names) const {
    requireNotLoading();
    names.clear();
    names.reserve(languages_.size());
    for (const Language& language : languages_)
        names.push_back(language.name);
    return names.size();
}

std::size_t interlang::GetKeys(std::vector<std::u16string>& keys) const {
    requireNotLoading();
    keys.clear();
    keys.reserve(keys_.size());
    for (std::size_t place = 0; place < keys_.size(); ++place)
        keys.push_back(ToWide(keys_[place], kCharsetUtf8));
    std::sort(keys.begin(), keys.end());
    return keys.size();
}

bool interlang::Write(ByteStream& out, std::u16string_view language, std::u16string_view reference) const {
    return writeLanguages(*this, out, language, reference);
}

bool interlang::CheckConsistency(std::u16string& report, std::int32_t maximum) const {
    return checkConsistency(*this, report, maximum);
}

}  // namespace owlkit
