#include "platform/host/registry_hive.h"

#include <algorithm>
#include <utility>

namespace platform::registry_hive {
namespace {

constexpr std::uint32_t kViewFlags = kKeyWow64_64Key | kKeyWow64_32Key;

constexpr std::pair<std::uint32_t, const char16_t*> kRoots[] = {{kHkeyClassesRoot, u"HKEY_CLASSES_ROOT"},
                                                                {kHkeyCurrentUser, u"HKEY_CURRENT_USER"},
                                                                {kHkeyLocalMachine, u"HKEY_LOCAL_MACHINE"},
                                                                {kHkeyUsers, u"HKEY_USERS"},
                                                                {kHkeyCurrentConfig, u"HKEY_CURRENT_CONFIG"}};

// Leads the path of a 32-bit request, root included, to the place where the 64-bit system keeps it.
void redirect(Names& names) {
    const auto is = [&names](std::size_t index, std::u16string_view name) {
        return index < names.size() && upper(names[index]) == name;
    };
    if (!is(0, u"HKEY_LOCAL_MACHINE") || !is(1, u"SOFTWARE") || names.size() < 3)
        return;
    const std::size_t at = is(2, u"CLASSES") ? 3 : 2;
    if ((at == 3 && !is(3, u"CLSID")) || is(at, u"WOW6432NODE"))
        return;
    names.insert(names.begin() + static_cast<std::ptrdiff_t>(at), u"Wow6432Node");
}

}  // namespace

Hive::Hive() {
    for (const auto& [number, name] : kRoots)
        child(top, name, true);
}

Hive& hive() {
    static Hive instance;
    return instance;
}

std::recursive_mutex& hiveGuard() {
    static std::recursive_mutex instance;
    return instance;
}

std::u16string upper(std::u16string_view text) {
    std::u16string result(text);
    for (char16_t& c : result)
        if ((c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7))
            c = static_cast<char16_t>(c - 0x20);
    return result;
}

Names split(std::u16string_view path) {
    Names names;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find(u'\\'), path.size());
        if (end != 0)
            names.emplace_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return names;
}

std::shared_ptr<Node> child(Node& parent, const std::u16string& name, bool make) {
    const std::u16string key = upper(name);
    const auto found = parent.children.find(key);
    if (found != parent.children.end())
        return found->second;
    if (!make)
        return nullptr;
    auto node = std::make_shared<Node>();
    node->name = name;
    node->place = parent.place;
    node->place.push_back(key);
    return parent.children[key] = node;
}

Status find(KeyRef key, std::uint32_t rights, OpenKey& found) {
    for (const auto& [number, name] : kRoots)
        if (key == predefinedKey(number)) {
            found = {child(hive().top, name, false), kKeyAllAccess};
            return kSuccess;
        }
    const auto at = hive().handles.find(key);
    if (at == hive().handles.end())
        return kErrorInvalidHandle;
    found = at->second;
    if (found.node->deleted)
        return kErrorKeyDeleted;
    return (found.access & rights) == rights ? kSuccess : kErrorAccessDenied;
}

Status locate(KeyRef parent, const std::u16string& path, std::uint32_t access, Place& place) {
    OpenKey start;
    if (const Status error = find(parent, 0, start); error != kSuccess)
        return error;
    if ((access & kViewFlags) == kViewFlags)
        return kErrorInvalidParameter;
    const std::u16string_view text = path.c_str();
    if (text.starts_with(u'\\'))
        return kErrorBadPathName;
    Names names = start.node->place;
    std::ranges::copy(split(text), std::back_inserter(names));
    if ((access & kKeyWow64_32Key) != 0)
        redirect(names);
    place.node = child(hive().top, names[0], false);
    std::size_t depth = 1;
    for (; depth < names.size(); ++depth) {
        const auto next = child(*place.node, names[depth], false);
        if (!next)
            break;
        place.node = next;
    }
    place.missing.assign(names.begin() + static_cast<std::ptrdiff_t>(depth), names.end());
    std::ranges::transform(names, std::back_inserter(place.whole), upper);
    return kSuccess;
}

bool denied(const Names& place, std::uint32_t access) {
    return std::ranges::any_of(hive().denials, [&](const Denial& denial) {
        return (denial.mask & access) != 0 && denial.place.size() <= place.size() &&
               std::equal(denial.place.begin(), denial.place.end(), place.begin());
    });
}

Status grant(const Place& place, std::uint32_t access, RegistryHandle& key) {
    // Never used twice, so that a handle from before a reset cannot close a later one.
    static std::uintptr_t lastHandle = 0x1000;
    if (denied(place.whole, access))
        return kErrorAccessDenied;
    const KeyRef handle = reinterpret_cast<KeyRef>(lastHandle += 4);
    hive().handles[handle] = {place.node, access & ~kViewFlags};
    key.reset(handle);
    return kSuccess;
}

Status removeKey(KeyRef parent, const std::u16string& path, std::uint32_t viewFlag) {
    Place place;
    if (const Status error = locate(parent, path, viewFlag, place); error != kSuccess)
        return error;
    if (!place.missing.empty())
        return kErrorFileNotFound;
    if (place.whole.size() < 2 || !place.node->children.empty() || denied(place.whole, kKeyDelete))
        return kErrorAccessDenied;
    Node* above = &hive().top;
    for (std::size_t i = 0; i + 1 < place.whole.size(); ++i)
        above = above->children[place.whole[i]].get();
    above->children.erase(place.whole.back());
    place.node->deleted = true;
    return kSuccess;
}

std::vector<Value>::iterator findValue(Node& node, std::u16string_view name) {
    const std::u16string wanted = upper(name);
    return std::ranges::find_if(node.values, [&](const Value& value) { return upper(value.name) == wanted; });
}

void store(Node& node, std::u16string_view name, std::uint32_t type, std::string data) {
    auto at = findValue(node, name);
    if (at == node.values.end())
        at = node.values.insert(at, Value{std::u16string(name), kRegNone, {}});
    at->type = type;
    at->data = std::move(data);
}

}  // namespace platform::registry_hive
