// A project with one CANopen line that the check has nothing to say about, and short ways to
// change it.
#pragma once

#include "check/modelchecker.h"
#include "tests/unit/store/storefixture.h"

#include <QFile>
#include <QSettings>

class Model
{
public:
    using Sub = ObjectDataBase::SUBINDEX_DATA_T;
    using ObjectCode = CANopen::ObjectCode;

    Model()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, files.path(QString()));
        store.createNewDataBase();
        for (const char *setting :
             {"line0type=1", "co_node_id=1", "receivebuffersize=10", "transmitbuffersize=5",
              "co_timer_interval=1000", "limit_check=1", "nmtmaster=0", "overwrite_predef=0"})
            general(setting);
        granularity(0, "8");
        feature("base", "<required_tool_version>3.11</required_tool_version>");
        user("costackpath", files.path("stack"));
        identify(0);
        variable(0x2000, 5, "rw");
        pdo(0x1400, "$nodeid+0x200");
        pdo(0x1800, "$NODEID+0x180");
    }

    /// "key=value"
    void general(const QString &setting)
    {
        const int equals = setting.indexOf('=');
        store.setGeneralSettingsValue(setting.left(equals), setting.mid(equals + 1));
    }
    void granularity(quint8 line, const QString &bits)
    {
        store.setDescriptionSettingsLine(line);
        store.setDescriptionSettingsValue("Granularity", bits);
    }
    void user(const QString &key, const QVariant &value,
              const QString &application = "CANopen Tessarine")
    {
        QSettings("Korvel", application).setValue("General/" + key, value);
    }
    void feature(const QString &name, const QByteArray &elements)
    {
        QDir().mkpath(files.path("stack"));
        QFile file(files.path("stack/x_featureinfo_" + name + ".xml"));
        file.open(QIODevice::WriteOnly);
        file.write("<stack>" + elements + "</stack>");
    }

    void object(quint16 index, ObjectCode code, quint8 line = 0)
    {
        ObjectDataBase::INDEX_DATA_T data;
        data.objectCode = code;
        store.addIndex(line, index, data);
    }
    void variable(quint16 index, quint16 type, const QString &access, quint8 line = 0)
    {
        object(index, ObjectCode::Var, line);
        Sub sub = makeSub("Value", type, "0");
        sub.accessType = access;
        sub.pdoMapping = PDOMapping(PDOMappingType::Optional);
        store.addSubIndex(line, index, 0, sub);
    }
    /// An object with a constant count of entries and the entries' values, of type UNSIGNED32.
    void record(quint16 index, const QStringList &values, const QString &access = "ro",
                quint8 line = 0)
    {
        object(index, ObjectCode::Record, line);
        Sub count = makeSub("Count", 5, QString::number(values.size()));
        count.accessType = access == "rw" ? "rw" : "const";
        count.implementation = access == "rw" ? 0 : 1;
        store.addSubIndex(line, index, 0, count);
        for (int i = 0; i < values.size(); ++i) {
            Sub entry = makeSub("Entry", 7, values.at(i));
            entry.accessType = access;
            store.addSubIndex(line, index, quint8(i + 1), entry);
        }
    }
    /// Communication parameters, and a constant mapping of object 0x2000.
    void pdo(quint16 index, const QString &cobId)
    {
        record(index, {cobId, "255"});
        record(index + 0x200, {"0x20000008"}, "const");
    }
    void identify(quint8 line)
    {
        variable(0x1000, 7, "ro", line);
        variable(0x1001, 5, "ro", line);
        variable(0x1017, 6, "rw", line);
        record(0x1018, {"0x123", "1", "1"}, "ro", line);
    }
    Sub get(quint16 index, quint8 sub)
    {
        Sub data;
        store.getSubIndexData(0, index, sub, data);
        return data;
    }
    template <typename Field, typename Value>
    void set(quint16 index, quint8 sub, Field Sub::*field, const Value &value)
    {
        Sub data = get(index, sub);
        data.*field = value;
        store.addSubIndex(0, index, sub, data);
    }
    void value(quint16 index, quint8 sub, const QString &text)
    {
        set(index, sub, &Sub::defaultValue, text);
    }

    StoreFixture files;
    ObjectDataBase store;
};
