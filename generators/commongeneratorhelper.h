// Start-up code that several protocols share, as texts.
#pragma once

#include "generators/dialect.h"
#include "generators/initstructversions.h"
#include "generators/udsstart.h"

#include <QObject>
#include <QPointer>
#include <QString>

class ObjectDataBase;

/// What commonstart and udsstart write, for those who want it as text; no generator does. Lines are
/// those of readProjectLines(). All UDS texts are empty, and tables have no rows, for a project
/// with neither UDS server nor UDS client.
class CommonGeneratorHelper : public QObject
{
    Q_OBJECT

public:
    using InitStructTypes = InitStruct;

    explicit CommonGeneratorHelper(ObjectDataBase *database, QObject *parent = nullptr);

    quint8 getInitStructVersion(InitStructTypes type) const;

    /// Definition of `commonInitVars`, to stand in front of the first statement of a function.
    QString getCommonInitVars() const;

    /// Statements that use a variable `retVal` and return it on failure.
    QString getUDSInit_common() const;
    /// As getUDSInit_common(); with \a multi the call tells its line.
    QString getUDSInit_lines(quint8 line, bool multi) const;

    /// Definitions of `udsServiceInitVars`, and for each line of its tables and `udsLine<n>`; with
    /// \a startedLines for those alone.
    QString getUDSInitStructures() const;
    QString getUDSInitStructures(const QList<quint8> &startedLines) const;

    /// Allowed sessions of the services of a line; empty if no service has a row.
    QString getUDSSessionTable(quint8 line) const;
    /// User levels of those services of a line that have any; empty if there are none.
    QString getUDSSecurityTable(quint8 line) const;

    /// "NULL" for a table without rows.
    QString getUDSSessionTableName(quint8 line) const;
    QString getUDSSecurityTableName(quint8 line) const;
    /// Rows that the table holds: a service with sub-functions has one for each of them.
    QString getUDSSessionTableSize(quint8 line) const;
    QString getUDSSecurityTableSize(quint8 line) const;

    static QString convertSessionToStackDefine(quint8 session);

protected:
    CommonGeneratorHelper(ObjectDataBase *database, const Dialect &words, QObject *parent);

private:
    bool hasUds() const;
    UdsStart::Tables udsTables(quint8 line) const; ///< empty for a project without UDS

    QPointer<ObjectDataBase> store;
    Dialect dialect;
};

/// The same texts for the V4 stack.
class CommonGeneratorHelperV4 : public CommonGeneratorHelper
{
    Q_OBJECT

public:
    explicit CommonGeneratorHelperV4(ObjectDataBase *database, QObject *parent = nullptr);
};
