#include "tools/interlang/recorder.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "foundation/text/text.h"
#include "tools/interlang/comments.h"
#include "tools/interlang/text.h"
#include "tools/options/edit_distance.h"

namespace translators {
namespace {

using owlkit::LineKind;
using owlkit::SyntaxRule;

constexpr std::array<std::u16string_view, 3> kRecords = {u"KEY:", u"LANG:", u"TEXT:"};

// The record that a line looks like without being one, such as "TXT:", "Text:" or "KEY CXT_MENU_HELP".
std::u16string_view likelyRecord(std::u16string_view line) {
    const std::size_t end = line.find_first_of(u": =\t");
    if (end == std::u16string_view::npos)
        return {};
    const std::u16string_view word = line.substr(0, end);
    const bool hasColon = owlkit::trimLeft(line.substr(end)).starts_with(u':');
    for (const std::u16string_view record : kRecords) {
        const std::u16string_view name = record.substr(0, record.size() - 1);
        const std::u16string lower = owlkit::toLowerAscii(word), expected = owlkit::toLowerAscii(name);
        if (hasColon ? options::editDistance<char16_t>(lower, expected) <= 1 : word == name)
            return record;
    }
    return hasColon && owlkit::toLowerAscii(word) == u"language" ? kRecords[1] : std::u16string_view();
}

std::string lineName(std::uint32_t line) {
    return "line " + std::to_string(line);
}

// What is noted about a text that goes belongs to the one that takes its place.
void keepNotes(const Text& former, Text& text) {
    std::vector<std::u16string> notes = text.notes;
    const auto isNew = [&](const std::u16string& note) {
        return std::ranges::find(notes, note) == notes.end();
    };
    text.notes.clear();
    std::ranges::copy_if(former.notes, std::back_inserter(text.notes), isNew);
    std::ranges::move(notes, std::back_inserter(text.notes));
}

}  // namespace

void Recorder::line(std::uint32_t number, LineKind kind, std::u16string_view content) {
    number_ = number;
    if (kind != LineKind::Blank && kind != LineKind::Comment)
        opening_ = false;
    switch (kind) {
        case LineKind::Blank:
        case LineKind::Comment:
            return comment(content);
        case LineKind::Key:
            return key(content);
        case LineKind::Text:
            text_ = {number, std::u16string(content)};
            return text();
        case LineKind::Language:
            keyPending_ = false;
            pending_.emplace_back();  // what stands above a language is no text's source
            if (!content.empty())
                language_ = {number, std::u16string(content)};
            interrupted_ = false;
            return;
        case LineKind::Continuation:
            return continuation(content);
    }
}

void Recorder::comment(std::u16string_view content) {
    interrupted_ = true;
    if (opening_)
        file_.opening.emplace_back(content);
    else if (!untranslated(content))
        pending_.emplace_back(content);
}

// An entry that is commented out belongs to the language above it.
bool Recorder::untranslated(std::u16string_view content) {
    if (!content.starts_with(kUntranslatedMark) || language_.line == 0)
        return false;
    const std::u16string_view record = owlkit::trim(content.substr(kUntranslatedMark.size()));
    if (record.starts_with(kRecords[0])) {
        const std::u16string name(owlkit::trim(record.substr(kRecords[0].size())));
        Text entry;
        entry.file = index_;
        entry.line = commentedKey_ = number_;
        takeComments(std::exchange(pending_, {}), name, entry);
        addLanguage(language_.content);
        Text& place = file_.untranslated[language_.content][name];
        keepNotes(place, entry);
        place = std::move(entry);
        untranslated_ = &place;
        return true;
    }
    if (!record.starts_with(kRecords[2]))
        return false;
    commentedText_ = number_;
    if (untranslated_ == nullptr || commentedKey_ < key_.line) {
        if (halfText_ < key_.line)
            halfText_ = number_;
        return false;
    }
    untranslated_->written = owlkit::trim(record.substr(kRecords[2].size()));
    if (!untranslated_->written.empty())
        file_.commentedTexts.push_back({number_, "the text is not in use; take away the #~ of both lines"});
    return true;
}

void Recorder::key(std::u16string_view content) {
    if (!content.empty() && !keyPending_) {
        leaveKey();
        key_ = {number_, std::u16string(content)};
        keyPending_ = keyIsLonely_ = true;
    }
    commentsOfKey_ = {};
    takeComments(std::exchange(pending_, {}), content, commentsOfKey_);
    interrupted_ = false;
}

void Recorder::leaveKey() {
    if (keyIsLonely_)
        file_.lonelyKeys.push_back(
            {key_.line,
             "no text for this key" +
                 (halfText_ > key_.line ? "; " + lineName(halfText_) + " still begins with #~" : "")});
}

void Recorder::text() {
    keyPending_ = keyIsLonely_ = false;
    Text comments = std::exchange(commentsOfKey_, {});
    Text between;
    takeComments(std::exchange(pending_, {}), key_.content, between);
    comments.notes.insert(comments.notes.end(), between.notes.begin(), between.notes.end());
    comments.meantEmpty |= between.meantEmpty;
    if (!comments.source)
        comments.source = between.source;
    comments_[number_] = std::move(comments);
    interrupted_ = false;
}

void Recorder::continuation(std::u16string_view content) {
    const std::u16string_view record = likelyRecord(content);
    if (!record.empty())
        likelyRecord_ = {number_, std::u16string(record)};
    if (!record.empty() && key_.line != 0)
        file_.oddContinuations.push_back(
            {number_, "continues the line above; was " + utf8(record) + " meant?"});
    else if (interrupted_)
        file_.oddContinuations.push_back({number_, "continues a text across a blank line or a comment"});
    interrupted_ = false;
}

void Recorder::addLanguage(const std::u16string& language) {
    if (std::ranges::find(file_.languages, language) == file_.languages.end())
        file_.languages.push_back(language);
}

void Recorder::stored(const owlkit::StoredText& stored) {
    const std::u16string language(stored.language);
    addLanguage(language);
    Text text = std::move(comments_[stored.line]);
    text.written = stored.written;
    text.text = decoded(stored.written);
    text.file = index_;
    text.line = stored.line;
    const auto [place, isNew] = file_.texts[language].try_emplace(std::u16string(stored.key));
    if (!isNew) {
        file_.replaced.push_back(
            {place->first, language, stored.line, place->second.line, place->second.written});
        keepNotes(place->second, text);
    }
    place->second = std::move(text);
}

std::string Recorder::describe(SyntaxRule rule) const {
    switch (rule) {
        case SyntaxRule::KeyAfterKey:
            return "a KEY: after the KEY: of " + lineName(key_.line) + ", which has no TEXT:";
        case SyntaxRule::TextAfterText:
            return "a TEXT: that has no KEY: of its own";
        case SyntaxRule::NoKey:
            return "there is no KEY: for the text of " + lineName(text_.line);
        case SyntaxRule::NoLanguage:
            return "there is no LANG: above the text of " + lineName(text_.line);
        case SyntaxRule::NothingToContinue:
            return "not understood: no record, no comment, and it continues nothing";
        case SyntaxRule::ContinuesEmptyRecord:
            break;
    }
    return "it continues a record in which nothing stands";
}

std::string Recorder::hint(SyntaxRule rule) const {
    const std::uint32_t since = rule == SyntaxRule::KeyAfterKey ? key_.line : 0;
    if (likelyRecord_.line > since)
        return "; " + utf8(likelyRecord_.content) + " was probably meant in " + lineName(likelyRecord_.line);
    if (rule == SyntaxRule::KeyAfterKey && commentedText_ > key_.line)
        return "; " + lineName(commentedText_) + " still begins with #~";
    if ((rule == SyntaxRule::TextAfterText || rule == SyntaxRule::NoKey) && commentedKey_ > key_.line)
        return "; " + lineName(commentedKey_) + " still begins with #~";
    return {};
}

void Recorder::failed(SyntaxRule rule) {
    file_.syntaxError = {number_, describe(rule) + hint(rule)};
}

void Recorder::end() {
    leaveKey();
    file_.closing = withoutLayout(pending_);
    for (auto& [language, entries] : file_.untranslated) {
        const auto texts = file_.texts.find(language);
        if (texts == file_.texts.end())
            continue;
        std::erase_if(entries, [&](const auto& entry) {
            const auto text = texts->second.find(entry.first);
            const bool isThere = text != texts->second.end();
            if (isThere)
                keepNotes(entry.second, text->second);
            return isThere;
        });
    }
}

}  // namespace translators
