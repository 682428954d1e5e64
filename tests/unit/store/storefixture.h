// What the store's tests share: a private home for temporary copies, and free SQL on a file.
#pragma once

#include "store/objectdatabase.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>

/// Puts the folder of temporary copies and the user settings into a folder that vanishes with the
/// fixture.
class StoreFixture
{
public:
    StoreFixture()
    {
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QCoreApplication::setApplicationName(QStringLiteral("CANopen Tessarine"));
        QCoreApplication::setApplicationVersion(QStringLiteral("3.11.2"));
        QCoreApplication::setOrganizationName(QStringLiteral("Korvel"));
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    QStringList temporaryCopies() const
    {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::DataLocation))
            .entryList({QStringLiteral("tsedatatemp_*")}, QDir::Files);
    }

    /// Runs statements on a database file beside any store.
    static bool runSql(const QString &file, const QStringList &statements)
    {
        bool done = true;
        {
            QSqlDatabase db =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fixture"));
            db.setDatabaseName(file);
            done = db.open();
            for (const QString &statement : statements) {
                QSqlQuery query(db);
                done = query.exec(statement) && done;
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("fixture"));
        return done;
    }

private:
    QTemporaryDir folder;
};

/// A subindex with a name, a type and a default value.
inline ObjectDataBase::SUBINDEX_DATA_T makeSub(const QString &name, quint16 dataType,
                                               const QString &value)
{
    ObjectDataBase::SUBINDEX_DATA_T sub;
    sub.name = name;
    sub.dataType = dataType;
    sub.defaultValue = value;
    return sub;
}
