// All that platform/com.h promises comes from the SDK and the system's libraries, but for the interface
// numbers (interface_ids.cpp). What is left to do is to hold the SDK against what the host declares.
#include "platform/com_layout.h"
