// Start-up code of UDS (ISO 14229-1), the same in all sources and for both generations of the
// stack.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

class ObjectDataBase;
class TextWriter;

/// For projects with a UDS server or client; whoever writes asks for that first.
namespace UdsStart
{

/// An active service of a line and what its rows list, each element as C text.
struct Service {
    quint8 sid = 0;
    QString name;
    QStringList list;
};

/// The tables of a line. A table without rows is not written, and its name is "NULL".
struct Tables {
    quint8 line = 0;
    QVector<Service> sessions; ///< allowed sessions of each service
    QVector<Service> security; ///< user levels of those services that have any

    QString sessionName() const;
    QString securityName() const;
};
Tables readTables(const ObjectDataBase &store, quint8 line);

/// Rows of the table: a service with sub-functions has one for each of them.
int countRows(const QVector<Service> &services);

/// "0x.." for a session that the stack has no word for.
QString sessionWord(quint8 session);

void writeSessionTable(TextWriter &out, const Tables &tables);
void writeSecurityTable(TextWriter &out, const Tables &tables);

/// Definitions of `udsServiceInitVars`, and for each line of its tables and `udsLine<n>`. Lines
/// that are not among \a startedLines still have their count of clients.
void writeStructures(TextWriter &out, const ObjectDataBase &store,
                     const QList<quint8> &startedLines);

/// Statements that use a variable `retVal` and return it on failure. With \a multi the call names
/// its line.
void writeCommonCall(TextWriter &out);
void writeLineCall(TextWriter &out, quint8 line, bool multi);

} // namespace UdsStart
