// Text between the command line, which is UTF-8 to the client, and everything else.
#pragma once

#include "tools/common/text.h"

namespace rightclick {

using tools::utf8;
using tools::wide;

}  // namespace rightclick
