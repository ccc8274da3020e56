// Import and export marks of SorvaneCommon.dll.
#pragma once

#ifndef SORVANECOMMON_API
#ifdef SorvaneCommon_EXPORTS
#define SORVANECOMMON_API __declspec(dllexport)
#else
#define SORVANECOMMON_API __declspec(dllimport)
#endif
#endif
