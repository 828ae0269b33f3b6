// Copies one file onto another, as a save does: for the test that lets its system calls fail or kills it at each.
#include <cstdio>

#include "platform/Files.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const qrv::FileResult fault = qrv::copyFile(argv[1], argv[2], qrv::Permissions::OfTarget);
    std::puts(fault ? fault->text.c_str() : "done");
    return fault ? 1 : 0;
}
