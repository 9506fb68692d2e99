// Hand-over files that lie in memory.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "contextmenu/launch_request.h"
#include "foundation/text/number.h"

namespace test {

struct HandoverInMemory final : nmshell::Handover {
    // A name as Windows gives it, with spaces to be escaped.
    std::u16string makeHandoverFileName() override {
        return u"C:\\Temp of A B\\" + owlkit::formatNumber<char16_t>(++made) + u".nmark";
    }
    [[nodiscard]] bool put(const std::u16string& name, std::u16string_view data) override {
        if (!isFull)
            files[name] = data;
        return !isFull;
    }
    std::u16string take(const std::u16string& name) override {
        const auto file = files.extract(name);
        return file ? file.mapped() : std::u16string();
    }

    std::map<std::u16string, std::u16string> files;
    std::uint32_t made = 0;
    bool isFull = false;  // nothing more can be put
};

}  // namespace test
