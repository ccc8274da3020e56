// Import and export marks of BXImage.dll.
#pragma once

#ifndef BXIMAGE_API
#ifdef BXImage_EXPORTS
#define BXIMAGE_API __declspec(dllexport)
#else
#define BXIMAGE_API __declspec(dllimport)
#endif
#endif
