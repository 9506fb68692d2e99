#include "testing/errors.h"

#include <gtest/gtest.h>

#include <exception>

namespace test {

Thrown thrownBy(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::exception& error) {
        return {error.what(), &typeid(error)};
    }
    return {};
}

void expectThrown(const std::type_info& expected, const char* text, const std::function<void()>& call) {
    SCOPED_TRACE(text);
    const Thrown thrown = thrownBy(call);
    ASSERT_NE(thrown.type, nullptr) << "nothing thrown";
    EXPECT_EQ(thrown.text, text);
    EXPECT_TRUE(*thrown.type == expected) << thrown.type->name();
}

}  // namespace test
