// What the host's files were asked for, and what they are to do, for tests.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

struct CreateFileArguments {
    std::u16string path;
    std::uint32_t access = 0;
    std::uint32_t share = 0;
    std::uint32_t creation = 0;
    std::uint32_t attributes = 0;  // attributes and flags
};

// The arguments of the latest call that no injected fault stopped, one that failed by itself included.
const CreateFileArguments& lastCreateFile();

// From now on no write takes more than `bytes`, and succeeds; nothing: every write takes all it is given.
void limitWrites(std::optional<std::uint32_t> bytes);

// How many files are open now: shows handles that were left open.
int openFileCount();

}  // namespace platform
