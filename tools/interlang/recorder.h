// Takes down what stands in a language file while it is read.
#pragma once

#include "lang/read_observer.h"
#include "tools/interlang/language_files.h"

namespace translators {

class Recorder final : public owlkit::ReadObserver {
  public:
    // `index` is the file's place among others.
    Recorder(LanguageFile& file, std::size_t index) : file_(file), index_(index) {}

    void line(std::uint32_t number, owlkit::LineKind kind, std::u16string_view content) override;
    void stored(const owlkit::StoredText& stored) override;
    void failed(owlkit::SyntaxRule rule) override;
    // To be called when all was read.
    void end();

  private:
    struct Record {
        std::uint32_t line = 0;  // 0: none yet
        std::u16string content;
    };

    void comment(std::u16string_view content);
    bool untranslated(std::u16string_view content);
    void key(std::u16string_view content);
    void leaveKey();
    void text();
    void continuation(std::u16string_view content);
    void addLanguage(const std::u16string& language);
    std::string describe(owlkit::SyntaxRule rule) const;
    std::string hint(owlkit::SyntaxRule rule) const;

    LanguageFile& file_;
    std::size_t index_;
    std::uint32_t number_ = 0;
    bool opening_ = true;                  // no record yet
    bool interrupted_ = false;             // a blank or comment line since the last record or continuation
    std::vector<std::u16string> pending_;  // comments and blank lines since the last text
    bool keyPending_ = false;              // neither a text nor a language since the last key
    bool keyIsLonely_ = false;             // no text since the last key
    Record key_, text_, language_;         // the last of each
    Record likelyRecord_;             // the last line that looks like a misspelled record, and its meaning
    std::uint32_t commentedKey_ = 0;  // lines of the last "#~ KEY:" and "#~ TEXT:"
    std::uint32_t commentedText_ = 0;
    std::uint32_t halfText_ = 0;    // that of the first "#~ TEXT:" below the last "KEY:"
    Text* untranslated_ = nullptr;  // that the last "#~ KEY:" began
    Text commentsOfKey_;
    std::map<std::uint32_t, Text> comments_;  // of the TEXT: record in this line
};

}  // namespace translators
