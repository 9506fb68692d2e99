#include "platform/host/registry_host.h"

#include <cstring>

#include "platform/host/registry_hive.h"
#include "platform/host/utf8.h"

namespace platform::host {
namespace {

using namespace registry_hive;

std::shared_ptr<Node> forceKey(std::u16string_view path) {
    std::shared_ptr<Node> node;
    for (const std::u16string& name : split(path))
        node = child(node ? *node : hive().top, name, true);
    return node;
}

std::string shown(const Value& value) {
    const bool text = value.type == kRegSz || value.type == kRegExpandSz || value.type == kRegMultiSz;
    std::string out;
    if (!text || value.data.size() % 2 != 0) {
        for (const char byte : value.data)
            for (const int shift : {4, 0})
                out += "0123456789abcdef"[(static_cast<unsigned char>(byte) >> shift) & 15];
        return out;
    }
    std::u16string wide(value.data.size() / 2, u'\0');
    std::memcpy(wide.data(), value.data.data(), value.data.size());
    for (const char byte : toHostName(wide))
        out += byte == '\0' ? std::string("\\0") : std::string(1, byte);
    return '"' + out + '"';
}

void dumpNode(const Node& node, const std::string& above, std::string& out) {
    const std::string path = above.empty() ? toHostName(node.name) : above + '\\' + toHostName(node.name);
    out += '[' + path + "]\n";
    for (const Value& value : node.values)
        out += '"' + toHostName(value.name) + "\" " + std::to_string(value.type) + ' ' + shown(value) + '\n';
    for (const auto& [key, below] : node.children)
        dumpNode(*below, path, out);
}

}  // namespace

void resetRegistry() {
    hive() = Hive();
}

void putKey(std::u16string_view path) {
    forceKey(path);
}

void putValue(std::u16string_view path, std::u16string_view name, std::uint32_t type,
              std::string_view bytes) {
    store(*forceKey(path), name, type, std::string(bytes));
}

void putText(std::u16string_view path, std::u16string_view name, std::uint32_t type,
             std::u16string_view text) {
    std::string bytes(text.size() * sizeof(char16_t), '\0');
    std::memcpy(bytes.data(), text.data(), bytes.size());
    putValue(path, name, type, bytes);
}

std::string dumpRegistry() {
    std::string out;
    for (const auto& [key, root] : hive().top.children)
        dumpNode(*root, {}, out);
    return out;
}

void denyAccess(std::u16string_view path, std::uint32_t mask) {
    hive().denials.push_back({split(upper(path)), mask});
}

void exportDeleteKeyEx(bool exported) {
    hive().exportsDeleteKeyEx = exported;
}

void afterSizeQuery(std::function<void()> change) {
    hive().afterSizeQuery = std::move(change);
}

std::uint32_t lastRegistryAccess() {
    return hive().lastAccessMask;
}

std::size_t openKeyCount() {
    return hive().handles.size();
}

}  // namespace platform::host
