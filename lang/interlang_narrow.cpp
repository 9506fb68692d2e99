// The narrow forms of the table's operations: conversion at the boundary, nothing else.
#include "foundation/charset/convert.h"
#include "lang/interlang.h"

namespace owlkit {
namespace {

std::u16string wideName(std::string_view name) {
    return ToWide(name, kCharsetLatin1);
}

template <class Convert>
std::size_t convertList(const std::vector<std::u16string>& from, std::vector<std::string>& to,
                        Convert convert) {
    to.clear();
    to.reserve(from.size());
    for (const std::u16string& text : from)
        to.push_back(convert(text));
    return to.size();
}

}  // namespace

void interlang::SetLanguages(std::string_view active, std::string_view primary) {
    SetLanguages(wideName(active), wideName(primary));
}

void interlang::SetKey(std::string_view key, CharsetCode charset) {
    SetKey(ToWide(key, charset));
}

void interlang::SetLanguage(std::string_view name) {
    SetLanguage(wideName(name));
}

void interlang::AddText(std::string_view text, CharsetCode charset) {
    AddText(ToWide(text, charset));
}

bool interlang::Write(ByteStream& out, std::string_view language, std::string_view reference) const {
    return Write(out, wideName(language), wideName(reference));
}

bool interlang::HasLanguage(std::string_view name) const {
    return HasLanguage(wideName(name));
}

std::size_t interlang::GetLanguages(std::vector<std::string>& names) const {
    std::vector<std::u16string> wide;
    GetLanguages(wide);
    return convertList(wide, names, [](const auto& name) { return ToNarrow(name, kCharsetLatin1); });
}

std::size_t interlang::GetKeys(std::vector<std::string>& keys) const {
    std::vector<std::u16string> wide;
    GetKeys(wide);
    return convertList(wide, keys, [](const auto& key) { return ToNarrow(key, kCharsetSystem); });
}

bool interlang::Find(std::string_view language, std::string_view key, NotFoundMode mode, std::string* out,
                     CharsetCode charset) const {
    std::u16string text;
    const bool found = Find(wideName(language), ToWide(key, charset), mode, &text);
    if (out != nullptr)
        *out = ToNarrow(text, charset);
    return found;
}

std::string interlang::GetText(std::string_view key, std::string_view language, CharsetCode charset) const {
    return ToNarrow(GetText(ToWide(key, charset), wideName(language)), charset);
}

bool interlang::HasText(std::string_view key, std::string_view language, CharsetCode charset) const {
    return HasText(ToWide(key, charset), wideName(language));
}

std::string interlang::GetTextWithArgs(std::string_view key, std::string_view first, std::string_view second,
                                       std::string_view language, CharsetCode charset) const {
    return ToNarrow(GetTextWithArgs(ToWide(key, charset), ToWide(first, charset), ToWide(second, charset),
                                    wideName(language)),
                    charset);
}

bool interlang::CheckConsistency(std::string& report, std::int32_t maximum) const {
    std::u16string wide;
    const bool consistent = CheckConsistency(wide, maximum);
    report = ToNarrow(wide, kCharsetSystem);
    return consistent;
}

}  // namespace owlkit
