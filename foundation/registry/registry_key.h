// Typed access to one key of the Windows registry.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/registry/registry_types.h"
#include "platform/registry.h"

namespace owlkit {

// Holds at most one open key and closes it. Not for use by two threads at once.
// Errors: std::invalid_argument "invalid argument" for a path of 255 code units or more; std::logic_error
// "invalid state" for what needs an open key on a closed one, "read-only error" for a change of a key opened
// read-only; std::runtime_error "failed" for a platform call that fails inside a read, a write, a count or an
// enumeration. The operations that answer bool report a failing platform call as false.
// Promised surface, which neither the extension nor its programs call: setView, clear, flush, valueSize, the
// listings, what reads and writes other values than dwords and plain texts, and of the static helpers all but
// readDwordOr, readRawStringOr, writeDword and writeString.
class RegistryKey {
  public:
    RegistryKey() = default;  // closed, default view
    // Takes the other's open key, but not its view, and leaves it closed; a swap leaves both views too.
    RegistryKey(RegistryKey&& other) noexcept;
    RegistryKey& operator=(RegistryKey&& other) noexcept;
    virtual ~RegistryKey();
    void swap(RegistryKey& other) noexcept;

    KeyAccessState state() const { return state_; }
    RegistryRoot root() const { return root_; }
    const std::u16string& path() const { return path_; }
    RegistryView view() const { return view_; }

    // RegOpenKeyExW; an empty path opens the root itself. On failure an open key stays open. A mode other
    // than ReadWrite opens read-only.
    [[nodiscard]] bool open(RegistryRoot root, const std::u16string& path, RegistryMode mode);
    // RegCreateKeyExW: makes the key and missing parents, or opens it, with full access. An empty path is an
    // "invalid argument", unlike for open(). On failure an open key stays open.
    [[nodiscard]] bool create(RegistryRoot root, const std::u16string& path);
    void close() noexcept;            // keeps the view
    void setView(RegistryView view);  // one that differs from the current one closes the key

    // Whether the key can be opened for reading, for writing, in this object's view.
    bool exists(RegistryRoot root, const std::u16string& path) const;
    bool isWritable(RegistryRoot root, const std::u16string& path) const;
    // Deletes the key unless it has subkeys; closes this object first if its root and path are exactly these.
    [[nodiscard]] bool deleteKey(RegistryRoot root, const std::u16string& path);
    // Deletes the key open for writing and makes it again, empty. On false the object is closed.
    [[nodiscard]] bool clear();
    [[nodiscard]] bool flush();  // RegFlushKey; needs a key open for writing

    [[nodiscard]] bool deleteValue(const std::u16string& name);
    bool valueExists(const std::u16string& name) const;
    // "not found" when there is no such value; the reads below answer the same.
    RegistryValueType valueType(const std::u16string& name) const;
    std::uint32_t valueSize(const std::u16string& name) const;  // bytes
    // The value in one platform call and without an exception; nothing when that fails or no key is open.
    std::optional<StoredValue> tryRead(const std::u16string& name, void* buffer,
                                       std::uint32_t capacity) const;

    // Reads throw std::runtime_error "invalid type" for a value that cannot be turned into the wanted type.
    // From a dword or, if it fits ("range error"), from a qword.
    std::int32_t readDword(const std::u16string& name) const;
    std::int64_t readQword(const std::u16string& name) const;  // or from a dword, sign-extended
    // From any of the three text types, of which at most one final NUL is dropped and an odd last byte is
    // ignored, or from a number as signed decimal text.
    std::u16string readString(const std::u16string& name) const;
    // readString, with the environment references of an expandable string replaced. A result of more than
    // 16382 code units, or a failing expansion, gives the text as it is stored.
    std::u16string readExpandedString(const std::u16string& name) const;
    // Empties `items`, then fills it from readString: every NUL ends an item, as does the end of a text that
    // does not end with one. Answers the number of items.
    std::size_t readMultiString(const std::u16string& name, std::vector<std::u16string>& items) const;
    // The bytes of a value of any type; answers their number. Null `buffer`: std::invalid_argument "invalid
    // pointer"; a value that is larger than `capacity`: std::length_error "invalid size".
    std::uint32_t readBinary(const std::u16string& name, void* buffer, std::uint32_t capacity) const;

    // Writes need a key open for writing. Data above 16383 bytes, the NUL of a text included, are
    // std::length_error "invalid size": the longest text has 8190 code units.
    void writeDword(const std::u16string& name, std::uint32_t value);
    void writeQword(const std::u16string& name, std::uint64_t value);
    void writeString(const std::u16string& name, const std::u16string& text);
    void writeExpandableString(const std::u16string& name, const std::u16string& text);
    // Each item followed by a NUL, and one more NUL.
    void writeMultiString(const std::u16string& name, const std::vector<std::u16string>& items);
    // A size of 0 is an "invalid size" too, null `data` with another one an "invalid pointer".
    void writeBinary(const std::u16string& name, const void* data, std::size_t size);

    // An index outside 0 to count - 1 is std::out_of_range "invalid index", a name above 254 units "failed".
    std::int32_t subkeyCount() const;
    std::u16string subkeyName(std::int32_t index) const;
    std::int32_t valueCount() const;
    std::u16string valueName(std::int32_t index) const;

    static std::u16string rootName(RegistryRoot root);  // "HKEY_CURRENT_USER" and so on; empty for no root

    // One-call helpers on a key of their own, in the default view. These answer `fallback` when the key does
    // not open, the value is missing or the read throws; in the first two cases readStringOr, which reads as
    // readExpandedString does, expands a fallback below 16384 units.
    static std::u16string readStringOr(RegistryRoot root, const std::u16string& path,
                                       const std::u16string& name, const std::u16string& fallback);
    static std::u16string readRawStringOr(RegistryRoot root, const std::u16string& path,
                                          const std::u16string& name, const std::u16string& fallback);
    static std::int32_t readDwordOr(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                                    std::int32_t fallback);
    static std::int64_t readQwordOr(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                                    std::int64_t fallback);
    static std::vector<std::u16string> readMultiStringOr(RegistryRoot root, const std::u16string& path,
                                                         const std::u16string& name,
                                                         const std::vector<std::u16string>& fallback);
    // Make the key if needed and write; false when it cannot be made, otherwise as the write.
    [[nodiscard]] static bool writeDword(RegistryRoot root, const std::u16string& path,
                                         const std::u16string& name, std::uint32_t value);
    [[nodiscard]] static bool writeQword(RegistryRoot root, const std::u16string& path,
                                         const std::u16string& name, std::uint64_t value);
    [[nodiscard]] static bool writeString(RegistryRoot root, const std::u16string& path,
                                          const std::u16string& name, const std::u16string& text);
    [[nodiscard]] static bool writeExpandableString(RegistryRoot root, const std::u16string& path,
                                                    const std::u16string& name, const std::u16string& text);
    [[nodiscard]] static bool writeMultiString(RegistryRoot root, const std::u16string& path,
                                               const std::u16string& name,
                                               const std::vector<std::u16string>& items);
    // Compatible: makes a missing key before it asks for the type; callers may write there without making it.
    // None when the key cannot be made.
    static RegistryValueType valueType(RegistryRoot root, const std::u16string& path,
                                       const std::u16string& name);
    // False also when the key does not open.
    [[nodiscard]] static bool deleteValue(RegistryRoot root, const std::u16string& path,
                                          const std::u16string& name);

  private:
    std::uint32_t viewFlag() const;
    void requireOpen() const;
    void requireWritable() const;
    std::u16string readText(const std::u16string& name, RegistryValueType type) const;
    std::u16string readUnits(const std::u16string& name) const;
    void writeText(const std::u16string& name, std::uint32_t type, const std::u16string& text);
    void writeData(const std::u16string& name, std::uint32_t type, const void* data, std::size_t size);
    static std::u16string expanded(const std::u16string& text);

    KeyAccessState state_ = KeyAccessState::Closed;
    RegistryRoot root_ = RegistryRoot::None;
    RegistryView view_ = RegistryView::Default;
    platform::RegistryHandle handle_;
    std::u16string path_;
};

}  // namespace owlkit
