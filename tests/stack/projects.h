// The parts of the projects whose generated C is compiled and run. Each is a file of the folder
// projects; see tests/fixtures/projecttext.h for its form.
#pragma once

#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"

/// \a text with the parts that its rows "use <names>" name; "<name>:1" has 1 in the place of %1.
inline QString withParts(const QString &text)
{
    QString whole;
    for (const QString &row : text.split('\n')) {
        const QStringList words = row.split(' ');
        whole += words.first() == "use" ? QString() : row + '\n';
        for (const QString &name : words.first() == "use" ? words.mid(1) : QStringList()) {
            const QString file = TEST_STACK "/projects/" + name.section(':', 0, 0) + ".txt";
            QString part = QString::fromUtf8(readFile(file));
            if (part.isEmpty())
                qFatal("no such part: %s", qPrintable(name));
            whole += withParts(part.replace("%1", name.section(':', 1)));
        }
    }
    return whole;
}

/// A row for each generation of the stack.
inline void addDialects()
{
    columns<bool>("isV4");
    QTest::newRow("classic") << false;
    QTest::newRow("v4") << true;
}
