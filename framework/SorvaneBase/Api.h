// Import and export marks of SorvaneBase.dll.
#pragma once

#ifndef SORVANEBASE_API
#ifdef SorvaneBase_EXPORTS
#define SORVANEBASE_API __declspec(dllexport)
#else
#define SORVANEBASE_API __declspec(dllimport)
#endif
#endif
