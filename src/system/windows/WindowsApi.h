#pragma once

#ifdef _WIN32

// The one door to the system's own header: for sources of this folder and of its tests, never for headers.
// Its macros with names of ours are taken back.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#undef CopyFile
#undef CreateFile
#undef DeleteFile
#undef GetObject
#undef GetUserName
#undef MessageBox
#undef ReplaceFile

#endif
