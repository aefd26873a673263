// What public headers must know of the platform: the export mark and the module handle. No system header.
#pragma once

#if defined(_WIN32)
#if defined(TAMBER_STATIC)
#define TB_API
#elif defined(TAMBER_BUILDING_KERNEL)
#define TB_API __declspec(dllexport)
#else
#define TB_API __declspec(dllimport)
#endif
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
#else
#define TB_API __attribute__((visibility("default")))
using HINSTANCE = void*;
#endif
