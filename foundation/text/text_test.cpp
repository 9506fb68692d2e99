#include "foundation/text/text.h"

#include <gtest/gtest.h>

namespace owlkit {
namespace {

TEST(Text, TrimsUpTo32Only) {
    EXPECT_EQ(trim(std::string_view("\0 \t\x1F a b\xE9 \r\n", 12)), "a b\xE9");
    EXPECT_EQ(trim(u"\x20\u00A0x\u3000\x01"), u"\u00A0x\u3000");
    EXPECT_EQ(trimLeft(u"  a  "), u"a  ");
}

TEST(Text, ReplacesOnceAndLowersAscii) {
    EXPECT_EQ(replaceAll("aaa", "aa", "a"), "aa");
    EXPECT_EQ(replaceAll(u"a b  c", u" ", u"%20"), u"a%20b%20%20c");
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
    EXPECT_EQ(toLowerAscii("@AZ[\xC9"), "@az[\xC9");
}

}  // namespace
}  // namespace owlkit
