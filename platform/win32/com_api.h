// COM and shell interfaces from the SDK.
#pragma once

#include "platform/win32/win32_api.h"

#include <objidl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <unknwn.h>
