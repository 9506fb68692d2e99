#include "lang/interlang.h"

namespace owlkit {
namespace {

// The first language of the list counts as the primary one here, not the one that lookups fall back to;
// deliberate.
template <class Texts>
void appendEntry(std::u16string& report, std::u16string_view key, const Texts& texts,
                 const std::vector<std::u16string>& languages) {
    report.append(u"KEY: ").append(key);
    if (languages.empty()) {
        report += u"ERROR: Data does not contain any translations";
    } else if (texts.contains(languages.front())) {
        report += u"\nNew Key? This key is absent in the following languages:";
        for (const std::u16string& name : languages) {
            if (!texts.contains(name))
                report.append(u" ").append(name);
        }
    } else {
        report += u"\nObsolete Key? This key has no primary language translation.";
    }
    report += u"\n\n";
}

}  // namespace

bool interlang::CheckConsistency(std::u16string& report, std::int32_t maximum) const {
    report.clear();
    requireNotLoading();
    std::int32_t errors = 0;
    for (const auto& [key, texts] : translations_) {
        if (texts.size() == languages_.size())
            continue;
        ++errors;
        if (maximum > 0 && errors > maximum) {
            report += u"More errors found, but report truncated.";
            return false;
        }
        appendEntry(report, key, texts, languages_);
    }
    return errors == 0;
}

}  // namespace owlkit
