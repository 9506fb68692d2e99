// Copies of language files in which nothing is left untranslated, as they are shipped.
#pragma once

#include <string>

#include "tools/interlang/language_files.h"

namespace translators {

struct FillResult {
    std::size_t filled = 0;   // texts
    std::size_t deleted = 0;  // files
};

// Copies `files` to `folder`, which is made if need be. Their languages' missing and empty texts are those of
// the reference there, a missing one in the first file of its language; a language's own name is not filled
// in, nor is a text that the reference leaves empty too. Files without gaps are copied byte for byte, and a
// copy that is right already is not touched. With `removeOthers` other language files of the folder are
// deleted. Throws Failure, before anything is written, where a file cannot be read whole, two have the same
// name, or one stands in `folder` itself.
FillResult fillFolder(const LanguageFiles& files, const Reference& reference, const std::u16string& folder,
                      bool removeOthers);

}  // namespace translators
