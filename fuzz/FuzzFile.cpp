// The file as it is.

#include "fuzz/Expect.h"
#include "fuzz/PackageRules.h"
#include "fuzz/Scratch.h"
#include "fuzz/Target.h"

#include <QString>

int LLVMFuzzerInitialize(int * /*argumentCount*/, char *** /*arguments*/)
{
    (void)fuzz::scratchFolder();
    fuzz::expectNoWarnings();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::expectPackageRules(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
