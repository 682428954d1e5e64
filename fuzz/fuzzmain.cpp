// The entry points that libFuzzer calls. FUZZ_TARGET is the name of the program's target.
#include "fuzz/harness.h"

#include <QCoreApplication>

namespace
{

const Fuzz::Target *target = nullptr;

}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    Fuzz::prepare();
    target = Fuzz::findTarget(FUZZ_TARGET);
    return target ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    target->run(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
