// Start-up code that several protocols share, as texts.
#include "generators/commongeneratorhelper.h"

#include "generators/codefeatures.h"
#include "generators/commonstart.h"
#include "generators/projectlines.h"
#include "generators/textwriter.h"
#include "store/objectdatabase.h"

#include <QBuffer>

namespace
{

/// What \a write writes.
template <typename Write>
QString textOf(const Write &write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TextWriter out(&buffer);
    write(out);
    out.finish();
    return QString::fromUtf8(buffer.data());
}

Dialect v4Words()
{
    Dialect words;
    words.preferV4 = true;
    return words;
}

} // namespace

CommonGeneratorHelper::CommonGeneratorHelper(ObjectDataBase *database, QObject *parent)
    : CommonGeneratorHelper(database, Dialect(), parent)
{
}

CommonGeneratorHelper::CommonGeneratorHelper(ObjectDataBase *database, const Dialect &words,
                                             QObject *parent)
    : QObject(parent), store(database), dialect(words)
{
}

CommonGeneratorHelperV4::CommonGeneratorHelperV4(ObjectDataBase *database, QObject *parent)
    : CommonGeneratorHelper(database, v4Words(), parent)
{
}

bool CommonGeneratorHelper::hasUds() const
{
    return readCodeFeatures(*store).hasUds();
}

UdsStart::Tables CommonGeneratorHelper::udsTables(quint8 line) const
{
    return hasUds() ? UdsStart::readTables(*store, line) : UdsStart::Tables();
}

quint8 CommonGeneratorHelper::getInitStructVersion(InitStructTypes type) const
{
    return initStructVersion(type, *store);
}

QString CommonGeneratorHelper::getCommonInitVars() const
{
    return textOf([this](TextWriter &out) { writeCommonInitVars(out, dialect, *store); });
}

QString CommonGeneratorHelper::getUDSInit_common() const
{
    return hasUds() ? textOf(UdsStart::writeCommonCall) : QString();
}

QString CommonGeneratorHelper::getUDSInit_lines(quint8 line, bool multi) const
{
    if (!hasUds())
        return QString();
    return textOf([=](TextWriter &out) { UdsStart::writeLineCall(out, line, multi); });
}

QString CommonGeneratorHelper::getUDSInitStructures() const
{
    return getUDSInitStructures(readProjectLines(*store).numbers);
}

QString CommonGeneratorHelper::getUDSInitStructures(const QList<quint8> &startedLines) const
{
    if (!hasUds())
        return QString();
    return textOf([&](TextWriter &out) { UdsStart::writeStructures(out, *store, startedLines); });
}

QString CommonGeneratorHelper::getUDSSessionTable(quint8 line) const
{
    return textOf([=](TextWriter &out) { UdsStart::writeSessionTable(out, udsTables(line)); });
}

QString CommonGeneratorHelper::getUDSSecurityTable(quint8 line) const
{
    return textOf([=](TextWriter &out) { UdsStart::writeSecurityTable(out, udsTables(line)); });
}

QString CommonGeneratorHelper::getUDSSessionTableName(quint8 line) const
{
    return udsTables(line).sessionName();
}

QString CommonGeneratorHelper::getUDSSecurityTableName(quint8 line) const
{
    return udsTables(line).securityName();
}

QString CommonGeneratorHelper::getUDSSessionTableSize(quint8 line) const
{
    return QString::number(UdsStart::countRows(udsTables(line).sessions));
}

QString CommonGeneratorHelper::getUDSSecurityTableSize(quint8 line) const
{
    return QString::number(UdsStart::countRows(udsTables(line).security));
}

QString CommonGeneratorHelper::convertSessionToStackDefine(quint8 session)
{
    return UdsStart::sessionWord(session);
}
