// Findings and counts as text and as JSON, in UTF-8.
#pragma once

#include <string>
#include <vector>

#include "tools/interlang/check.h"

namespace translators {

// One line a finding, "FILE:LINE: error: LANGUAGE KEY: message [check]", then how far the languages are that
// are not translated whole, the consistency report and the counts.
std::string toText(const CheckResult& result);
std::string toJson(const CheckResult& result);

// A table, one row a language.
std::string toText(const std::vector<Coverage>& languages);
std::string toJson(const std::vector<Coverage>& languages, const Reference& reference);

}  // namespace translators
