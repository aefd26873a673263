// The export mark of tbPortableKernel, the companion module of the kernel: geometry and visual traits that loaders
// create and drawing plug-ins draw.
#pragma once

#if defined(_WIN32)
#if defined(tbPortableKernel_EXPORTS)
#define TB_PORTABLE_API __declspec(dllexport)
#else
#define TB_PORTABLE_API __declspec(dllimport)
#endif
#else
#define TB_PORTABLE_API __attribute__((visibility("default")))
#endif
