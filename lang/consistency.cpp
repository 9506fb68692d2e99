#include "lang/consistency.h"

#include <vector>

namespace owlkit {
namespace {

// Compatible: translators know the first language of the list as the primary one here, not the one that
// lookups fall back to.
void appendEntry(std::u16string& report, const std::u16string& key, const std::vector<bool>& has,
                 const std::vector<std::u16string>& languages) {
    report.append(u"KEY: ").append(key);
    if (languages.empty()) {
        report += u"ERROR: Data does not contain any translations";
    } else if (has.front()) {
        report += u"\nNew Key? This key is absent in the following languages:";
        for (std::size_t i = 0; i < languages.size(); ++i)
            if (!has[i])
                report.append(u" ").append(languages[i]);
    } else {
        report += u"\nObsolete Key? This key has no primary language translation.";
    }
    report += u"\n\n";
}

}  // namespace

bool checkConsistency(const interlang& table, std::u16string& report, std::int32_t maximum) {
    report.clear();
    std::vector<std::u16string> languages;
    std::vector<std::u16string> keys;
    table.GetLanguages(languages);
    table.GetKeys(keys);
    std::int32_t errors = 0;
    std::vector<bool> has(languages.size());
    for (const std::u16string& key : keys) {
        bool everywhere = true;
        for (std::size_t i = 0; i < languages.size(); ++i) {
            has[i] = table.HasText(key, languages[i]);
            everywhere = everywhere && has[i];
        }
        if (everywhere)
            continue;
        ++errors;
        if (maximum > 0 && errors > maximum) {
            report += u"More errors found, but report truncated.";
            return false;
        }
        appendEntry(report, key, has, languages);
    }
    return errors == 0;
}

}  // namespace owlkit
