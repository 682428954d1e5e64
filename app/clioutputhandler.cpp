// Reports to standard output.
#include "app/clioutputhandler.h"

#include "support/printable.h"

#include <cstdio>

CLIOutputHandler::CLIOutputHandler(QObject *parent)
    : OutputHandlerBase(parent), stream(std::make_unique<QTextStream>(stdout, QIODevice::ReadWrite))
{
    stream->setCodec("UTF-8");
}

void CLIOutputHandler::printLine(const QVariant &line)
{
    print(removeTags(line.toString()) + QLatin1Char('\n'));
}

void CLIOutputHandler::print(const QVariant &text)
{
    const QString plain = printableText(text.toString());
    write(plain);
    log += plain;
}

CLIOutputHandler &CLIOutputHandler::operator<<(const QVariant &text)
{
    print(text.toString() + QLatin1Char(' '));
    return *this;
}

void CLIOutputHandler::printHelpValue(const QString &key, const QString &value)
{
    write(QStringLiteral("\t%1\t\t%2\n").arg(key, value));
}

QString CLIOutputHandler::removeTags(const QString &text)
{
    // One pass: names from foreign files reach this, and a pattern match that tries each "<" anew
    // takes square time on a text full of them.
    QString result;
    int done = 0;
    for (int open = text.indexOf(QLatin1Char('<')); open >= 0;
         open = text.indexOf(QLatin1Char('<'), done)) {
        const int stop = text.indexOf(QLatin1Char('.'), open);
        const int end = stop < 0 ? text.size() : stop;
        const int length = text.midRef(open, end - open).lastIndexOf(QLatin1Char('>')) + 1;
        const bool isTag = length > 0;
        result += text.midRef(done, (isTag ? open : end) - done);
        done = isTag ? open + length : end;
    }
    return result + text.midRef(done);
}

void CLIOutputHandler::write(const QString &text)
{
    *stream << text;
    stream->flush();
}
