// Whole runs of the tool on untrusted input, within this process: what libFuzzer and the test of
// its findings share.
#pragma once

#include <QByteArray>

namespace Fuzz
{

/// One kind of input.
struct Target {
    const char *name; ///< of the folders with its inputs, too
    /// Opens, imports or applies the input as the tool does, checks with corrections, writes all
    /// files whatever the check has found, and saves. Leaves no file. Projects in YAML go no
    /// further than to their records, and back; DBC files to the records of a line, XML files to
    /// their own.
    void (*run)(const QByteArray &input);
};

/// Null if there is no target of that name.
const Target *findTarget(const QByteArray &name);

/// To be called once, before the first run and after the making of the application object.
void prepare();

} // namespace Fuzz
