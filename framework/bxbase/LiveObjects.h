// Counts the reference-counted objects that are alive, over all modules of the process.
#pragma once

#include "SorvaneBase/Api.h"

#include <map>
#include <string>
#include <typeinfo>

namespace bxbase {

/// The tests' proof that nothing leaks: a shared object that outlives its owner shows up here by name.
///
/// The counts live in SorvaneBase.dll, so that objects made in one module and destroyed in another, and
/// objects of a component that has been unloaded meanwhile, are all counted once. ReferencedImpl maintains
/// them when the build sets BXBASE_COUNT_OBJECTS; otherwise they stay 0.
///
/// Thread: the host's user-interface thread, like the objects themselves.
class LiveObjects {
public:
    /// The counter of one type. The reference stays valid until the process ends.
    SORVANEBASE_API static int& counter(const std::type_info& type);

    /// The number of objects alive of all types together.
    SORVANEBASE_API static int total();

    /// What is alive, by the type's readable name; types with a count of 0 are left out.
    SORVANEBASE_API static std::map<std::string, int> byType();
};

} // namespace bxbase
