// The body behind an envelope that is right: size, zlib stream and checksum are made for each
// input.

#include "fuzz/Expect.h"
#include "fuzz/Forge.h"
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
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<int>(size));
    fuzz::expectPackageRules(fuzz::quickSeal(body));
    return 0;
}
