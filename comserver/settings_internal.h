// What reading and writing the settings have in common.
#pragma once

#include <exception>

namespace nmshell {

inline constexpr const char16_t* kEnabled = u"Enabled";
inline constexpr const char16_t* kIcons = u"Icons";
inline constexpr const char16_t* kLanguage = u"Language";

// What `question` answers, or `fallback` when it throws.
template <class Answer, class Question>
Answer answerOr(Answer fallback, Question question) {
    try {
        return question();
    } catch (const std::exception&) {
        return fallback;
    }
}

}  // namespace nmshell
