// What the file stand-in was asked for and what it answers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform::host {

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

// Takes the limit of writes away and forgets the recorded call. Open files stay open.
void resetFiles();

}  // namespace platform::host
