// The entry point of every test program.
#include <gmock/gmock.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>

int main(int argc, char** argv) {
    // ctest reads the list of tests from our output; a carriage return would become part of each name.
    _setmode(_fileno(stdout), _O_BINARY);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
