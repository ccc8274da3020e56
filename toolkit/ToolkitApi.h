// Import and export marks of toolkit.dll.
#pragma once

#ifdef toolkit_EXPORTS
#define TOOLKIT_API __declspec(dllexport)
#else
#define TOOLKIT_API __declspec(dllimport)
#endif
