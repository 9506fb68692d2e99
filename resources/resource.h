// Identifiers of the resources, for the resource compiler and the code. The pictures in icons/ and bitmaps/
// are named by them.
#pragma once

#define IDB_WIPE_FILES 230
#define IDB_WIPE_DRIVE 231
#define IDB_CLEAN_DRIVE 232
#define IDB_RECYCLE_BIN 233
#define IDB_USER_RECYCLE_BIN 234
#define IDB_ADMIN_RECYCLE_BIN 235
#define IDB_NULLMARK 236
#define IDB_OPTIONS 237
#define IDB_STANDALONE 238
#define IDB_HELP 239
#define IDB_ABOUT 240

#define IDB_FIRST IDB_WIPE_FILES
#define IDB_LAST IDB_ABOUT
