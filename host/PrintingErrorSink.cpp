// Tells the person at the console why an export failed.
#include "host/PrintingErrorSink.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/Console.h"

#include <utility>

namespace host {

PrintingErrorSink::PrintingErrorSink(Console& console, std::function<std::string(const std::string&)> explain)
    : console(console), explain(std::move(explain)) {}

void PrintingErrorSink::reportError(const Sorvane::u8string& sourceFile, int line,
                                    const Sorvane::u8string& message) {
    ExportErrorSink::reportError(sourceFile, line, message);
    bxutils::getSystemLogFormater()->log(0, message.c_str(), sourceFile.c_str(), line);
    const std::string sentence = "scanexport: " + explain(message) + "\n";
    if (sentence != std::exchange(said, sentence))
        console.printError(sentence);
}

} // namespace host
