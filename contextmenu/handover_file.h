// The temporary file through which a selection too long for the command line reaches the application: UTF-8
// without a byte-order mark, zero characters included; a lone surrogate is its three bytes, so that any list
// of paths comes back code unit for code unit.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "contextmenu/launch_request.h"

namespace nmshell {

// At most this many bytes of a hand-over file are read.
inline constexpr std::size_t kMaxHandoverBytes = 10485760;

// The full name of hand-over file number `counter`: "tfn_", 8 hexadecimal digits and `extension` in the
// temporary folder, or without a folder when there is none. Names repeat after 100 numbers; that is intended.
std::u16string handoverFileName(std::uint32_t counter, std::u16string_view extension);

// Writes `data` to a new file, in place of the file or link that has the name; what cannot be deleted is left
// as it is. False, or an exception, when not all of it could be written; then there is no file of that name
// unless it could not be deleted.
[[nodiscard]] bool writeHandoverFile(const std::u16string& name, std::u16string_view data);

// The text of the file, of which at most kMaxHandoverBytes are read; the file is then deleted. Empty when it
// cannot be opened, and then it is left alone.
std::u16string readHandoverFile(const std::u16string& name);

// The files of one process, numbered from 1: two threads draw two numbers.
class HandoverFiles : public Handover {
  public:
    // `extension` is that of the names, with its point.
    explicit HandoverFiles(std::u16string extension = u".tmp") : extension_(std::move(extension)) {}

    std::u16string makeHandoverFileName() override {
        return handoverFileName(++std::atomic_ref(counter_), extension_);
    }
    [[nodiscard]] bool put(const std::u16string& name, std::u16string_view data) override {
        return writeHandoverFile(name, data);
    }
    std::u16string take(const std::u16string& name) override { return readHandoverFile(name); }

  private:
    std::u16string extension_;
    std::uint32_t counter_ = 0;
};

}  // namespace nmshell
