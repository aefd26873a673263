// The export mark of tbNull, the drawing plug-in that draws nothing and counts everything.
#pragma once

#if defined(_WIN32)
#if defined(tbNull_EXPORTS)
#define TB_NULL_API __declspec(dllexport)
#else
#define TB_NULL_API __declspec(dllimport)
#endif
#else
#define TB_NULL_API __attribute__((visibility("default")))
#endif
