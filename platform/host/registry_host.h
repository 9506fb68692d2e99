// What the registry stand-in was asked for and what it answers: an in-memory hive whose five roots always
// exist and are empty at first. It compares names without regard to the case of ASCII and Latin-1 letters,
// keeps the case in which a key or value was first written, lists subkeys in the order of their names and
// values in the order in which they were first written, and grants a handle exactly the rights that were
// asked for. The 32-bit view finds HKEY_LOCAL_MACHINE\Software below Software\Wow6432Node (classes: CLSID
// below Software\Classes\Wow6432Node); everything else is shared. Roots do not mirror each other:
// HKEY_CLASSES_ROOT is a tree of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace platform::host {

// Paths begin with a root's name: u"HKEY_CURRENT_USER\\Software\\...".

// Back to the empty hive, without denials, with RegDeleteKeyExW exported. Open handles become invalid.
void resetRegistry();

// Makes a key and its missing parents, past all checks of access.
void putKey(std::u16string_view path);

// Makes the key and stores the value: any type with any bytes, past all checks.
void putValue(std::u16string_view path, std::u16string_view name, std::uint32_t type, std::string_view bytes);

// The same with UTF-16 text as the bytes; no NUL is added.
void putText(std::u16string_view path, std::u16string_view name, std::uint32_t type,
             std::u16string_view text);

// All keys and values, as UTF-8: a key is a line `[full path]`, below it a line `"name" type data` for each
// of its values, the data in quotation marks with NUL as \0 for an even-sized text type, else in hex.
std::string dumpRegistry();

// From now on the key at `path` and all below it refuse what asks for any right in `mask`: opening with it,
// deleting for kKeyDelete, making a subkey for kKeyCreateSubKey.
void denyAccess(std::u16string_view path, std::uint32_t mask);

// Whether the module "kernel32" exports RegDeleteKeyExW.
void exportDeleteKeyEx(bool exported);

// Runs `change` once, after the next query for the size of a value that did not ask for its data: another
// process that writes in between.
void afterSizeQuery(std::function<void()> change);

// The access mask of the last call that opened or made a key and that no injected fault stopped, whether it
// succeeded or not.
std::uint32_t lastRegistryAccess();

// How many keys are open.
std::size_t openKeyCount();

}  // namespace platform::host
