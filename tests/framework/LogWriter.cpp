// Writes records to a log as a process of its own: log_writer FILE NAME COUNT.
#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxutils/SystemLog.h"

#include <cstdlib>
#include <cwchar>

extern "C" int wmain(int argc, wchar_t** argv) {
    if (argc != 4 || !bxutils::setSystemLogFile(argv[1]))
        return EXIT_FAILURE;
    std::string name;
    Sorvane::c_u16u8(name, argv[2]);
    const long count = std::wcstol(argv[3], nullptr, 10);
    for (long i = 0; i < count; ++i)
        bxutils::getSystemLogFormater()->log(2, name.c_str(), "LogWriter", i);
    return EXIT_SUCCESS;
}
