// The host's exception class, which also serves as the record of reported failures.
#include "SorvaneBase/SorvaneException.h"

SorvaneException::SorvaneException() = default;
SorvaneException::SorvaneException(const SorvaneException&) = default;
SorvaneException& SorvaneException::operator=(const SorvaneException&) = default;
SorvaneException::~SorvaneException() = default;

const char* SorvaneException::what() const noexcept {
    return reports.empty() ? "an unspecified error" : reports.front().message.c_str();
}

bool SorvaneException::isEmpty() const noexcept {
    return reports.empty();
}

void SorvaneException::reportError(const Sorvane::u8string& sourceFile, int line,
                                   const Sorvane::u8string& message) {
    reports.push_back({sourceFile, line, message});
}
