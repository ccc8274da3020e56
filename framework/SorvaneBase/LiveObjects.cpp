// Counts the reference-counted objects that are alive, over all modules of the process.
#include "bxbase/LiveObjects.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace bxbase {

namespace {

/// By the type's name, not by its type_info, which goes away with the module that defines it.
std::map<std::string, int>& counters() {
    static std::map<std::string, int> byName;
    return byName;
}

std::string readableName(const std::string& name) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
    return readable ? readable.get() : name;
}

} // namespace

int& LiveObjects::counter(const std::type_info& type) {
    return counters()[type.name()];
}

int LiveObjects::total() {
    int sum = 0;
    for (const auto& [name, count] : counters())
        sum += count;
    return sum;
}

std::map<std::string, int> LiveObjects::byType() {
    std::map<std::string, int> alive;
    for (const auto& [name, count] : counters())
        if (count != 0)
            alive.emplace(readableName(name), count);
    return alive;
}

} // namespace bxbase
