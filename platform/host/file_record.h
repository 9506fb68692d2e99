// What the last createFile() of the host was asked for, for tests.
#pragma once

#include <cstdint>
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

// How many files are open now: shows handles that were left open.
int openFileCount();

}  // namespace platform
