// What a call comes to when it may throw. The one place where tests catch.
#pragma once

#include <functional>
#include <string>
#include <typeinfo>

namespace test {

// What `call` threw: the text and the type of its exception, or nothing and null.
struct Thrown {
    std::string text;
    const std::type_info* type = nullptr;
};
Thrown thrownBy(const std::function<void()>& call);

// The text alone.
inline std::string errorOf(const std::function<void()>& call) {
    return thrownBy(call).text;
}

// What `action` gives as narrow text, "" for nothing, or the text of the error it throws.
template <class Action>
std::string outcome(Action action) {
    std::string result;
    const Thrown thrown = thrownBy([&] {
        if constexpr (requires { std::to_string(action()); }) {
            result = std::to_string(action());
        } else if constexpr (requires { action().size(); }) {
            const auto text = action();
            result.assign(text.begin(), text.end());
        } else {
            action();
        }
    });
    return thrown.type != nullptr ? thrown.text : result;
}

// That `call` throws exactly the type `expected` with `text`.
void expectThrown(const std::type_info& expected, const char* text, const std::function<void()>& call);

template <class Error>
void expectError(const char* text, const std::function<void()>& call) {
    expectThrown(typeid(Error), text, call);
}

}  // namespace test
