// Files as bytes.
#pragma once

#include <string>

namespace translators {

// The file's bytes. Throws Failure when it cannot be read whole.
std::string readBytes(const std::u16string& path);

// Creates the file, or replaces it once all was written to a new one beside it, which takes over its mode,
// owner, access list and extended attributes. A symbolic link is followed; what is no regular file is written
// to as it is. Where something of that cannot be taken over, or the file not be replaced, it is overwritten
// in place. Throws Failure; the old file is then as it was, except in these two cases.
void writeBytes(const std::u16string& path, const std::string& bytes);

// The last change of the file in seconds since 1970, or 0.
long long changeTime(const std::u16string& path);

// The platform's part of writeBytes.

// Where the chain of symbolic links that begins at `path` ends; elsewhere than on Windows also where no file
// is there. A path that is no link stays as it is.
std::u16string withoutLinks(const std::u16string& path);

// Gives `fresh` what `path` has of mode, owner, access list and extended
// attributes, and puts it in its place. False when one of them cannot be taken over or the file not be
// replaced; `path` is then as it was.
bool replaceFile(const std::u16string& path, const std::u16string& fresh);

}  // namespace translators
