#include "platform/shell.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// Holds on both sides, so the stand-in counts drives as Windows does.
TEST(Shell, DriveNumbers) {
    const struct Case {
        const char16_t* path;
        int number;
    } cases[] = {
        {u"A:", 0},          {u"a:\\", 0},         {u"C:\\Windows", 2},
        {u"z:x", 25},        {u"\\\\?\\C:\\", 2},  {u"\\\\?\\z:", 25},
        {u"", -1},           {u"C", -1},           {u"C;\\", -1},
        {u"@:", -1},         {u"[:", -1},          {u"`:", -1},
        {u"{:", -1},         {u"1:", -1},          {u" C:", -1},
        {u"\\\\server", -1}, {u"\\\\?\\", -1},     {u"\\\\?\\UNC\\", -1},
        {u"//?/C:/", -1},    {u"\\\\.\\C:", -1},   {u"\u00C1:\\", -1},
        {u"\u0143:\\", -1},  {u"\uFF23:\\", -1},   {u"::", -1},
        {u"\\??\\C:\\", -1}, {u"\\\\?\\\\C:", -1}, {u"\\\\?\\C\\:", -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(c.path)));
        EXPECT_EQ(driveNumber(c.path), c.number);
    }
}

}  // namespace
}  // namespace platform
