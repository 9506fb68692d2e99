// The store behind the host's registry: keys, values, open handles and denials.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace platform::registry_hive {

using Names = std::vector<std::u16string>;

struct Value {
    std::u16string name;
    std::uint32_t type = kRegNone;
    std::string data;
};

struct Node {
    std::u16string name;
    Names place;  // upper-case names from the root's down to this key's own
    bool deleted = false;
    std::map<std::u16string, std::shared_ptr<Node>> children;  // by upper-case name
    std::vector<Value> values;
};

struct OpenKey {
    std::shared_ptr<Node> node;
    std::uint32_t access = 0;
};

struct Denial {
    Names place;
    std::uint32_t mask = 0;
};

struct Hive {
    Hive();
    Node top;  // its children are the roots
    std::map<KeyRef, OpenKey> handles;
    std::vector<Denial> denials;
    bool exportsDeleteKeyEx = true;
    std::uint32_t lastAccessMask = 0;
    std::function<void()> afterSizeQuery;
};

Hive& hive();

// Held by every call of the registry. What a test has run between two queries is itself such calls.
using HiveLock = std::lock_guard<std::recursive_mutex>;
std::recursive_mutex& hiveGuard();

std::u16string upper(std::u16string_view text);

// The names between the backslashes, empty ones left out.
Names split(std::u16string_view path);

// The subkey of that name, made first if `make` and it is missing; else null.
std::shared_ptr<Node> child(Node& parent, const std::u16string& name, bool make);

// The key behind a predefined root or an open handle that carries all of `rights`.
Status find(KeyRef key, std::uint32_t rights, OpenKey& found);

// Where a path from an open key leads, in the view that `access` names.
struct Place {
    std::shared_ptr<Node> node;  // the deepest key there is on the way
    Names missing;               // the names below it that are not there
    Names whole;                 // all names in upper case
};
Status locate(KeyRef parent, const std::u16string& path, std::uint32_t access, Place& place);

// Whether a denial forbids any of the rights in `access` at that place.
bool denied(const Names& place, std::uint32_t access);

// Opens a handle to the key with the rights asked for.
Status grant(const Place& place, std::uint32_t access, RegistryHandle& key);

// Takes the key away unless it is a root, has subkeys or is denied.
Status removeKey(KeyRef parent, const std::u16string& path, std::uint32_t viewFlag);

std::vector<Value>::iterator findValue(Node& node, std::u16string_view name);
void store(Node& node, std::u16string_view name, std::uint32_t type, std::string data);

}  // namespace platform::registry_hive
