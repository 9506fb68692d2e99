#include "platform/win32/long_path.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// MAX_PATH counts the closing zero, so a path of 259 is the longest that goes without a prefix.
TEST(LongPath, PrefixesAbsolutePathsThatAreTooLong) {
    const std::u16string tail(300, u'x');
    const struct Case {
        const char* name;
        std::u16string path, expected;
    } cases[] = {
        {"longest without", u"C:\\" + tail.substr(0, 256), u"C:\\" + tail.substr(0, 256)},
        {"shortest with", u"C:\\" + tail.substr(0, 257), u"\\\\?\\C:\\" + tail.substr(0, 257)},
        {"slashes", u"c:/a//b/" + tail, u"\\\\?\\c:\\a\\b\\" + tail},
        {"dots", u"C:\\a\\.\\b\\..\\" + tail, u"\\\\?\\C:\\a\\" + tail},
        {"share", u"\\\\server\\share\\" + tail, u"\\\\?\\UNC\\server\\share\\" + tail},
        {"share, slashes", u"//server/share/" + tail, u"\\\\?\\UNC\\server\\share\\" + tail},
        {"short in the end", u"C:\\" + tail + u"\\..\\a", u"\\\\?\\C:\\a"},
        {"prefixed", u"\\\\?\\C:\\a/" + tail, u"\\\\?\\C:\\a/" + tail},
        {"prefixed share", u"\\\\?\\UNC\\s\\t\\" + tail, u"\\\\?\\UNC\\s\\t\\" + tail},
        {"prefixed by slashes", u"//?/C:/" + tail, u"//?/C:/" + tail},
        {"device", u"\\\\.\\C:\\" + tail, u"\\\\.\\C:\\" + tail},
        {"native", u"\\??\\C:\\" + tail, u"\\??\\C:\\" + tail},
        {"relative", tail + u"\\a", tail + u"\\a"},
        {"of the current drive", u"\\" + tail, u"\\" + tail},
        {"of a drive's current folder", u"C:" + tail, u"C:" + tail},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(SystemPath(c.path).text(), c.expected);
    }
}

}  // namespace
}  // namespace platform
