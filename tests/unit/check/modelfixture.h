// A project with one CANopen line that the check has nothing to say about, and a short language to
// change it.
#pragma once

#include "check/modelchecker.h"
#include "tests/fixtures/storefixture.h"

#include <QFile>
#include <QSettings>

class Model
{
public:
    using Sub = ObjectDataBase::SUBINDEX_DATA_T;
    using Code = CANopen::ObjectCode;

    Model()
    {
        store.createNewDataBase();
        for (const char *words :
             {"set line0type=1", "set co_node_id=1", "set receivebuffersize=10",
              "set transmitbuffersize=5", "set co_timer_interval=1000", "set limit_check=1",
              "granularity 8", "feature base <required_tool_version>3.11</required_tool_version>",
              "variable 1000 7 ro", "variable 1001 5 ro", "variable 1017 6 rw",
              "record 1018 ro 0x123 1 1", "variable 2000 5 rw", "record 1400 ro $nodeid+0x200 255",
              "record 1600 const 0x20000008", "record 1800 ro $NODEID+0x180 255",
              "record 1a00 const 0x20000008"})
            change(words);
        user("costackpath", files.path("stack"));
    }

    /// One change in words, such as "put 1018:2 access rw"; objects are in hexadecimal.
    void change(const QString &text)
    {
        const QStringList words = text.split(' ');
        const QString rest = text.section(' ', 1);
        const auto index = quint16(words.value(1).section(':', 0, 0).toUInt(nullptr, 16));
        const auto sub = quint8(words.value(1).section(':', 1).toUInt(nullptr, 16));
        if (words.first() == "set")
            store.setGeneralSettingsValue(rest.section('=', 0, 0), rest.section('=', 1));
        else if (words.first() == "node")
            store.addNode(quint8(rest.toUInt()), ObjectDataBase::NODE_DATA_T());
        else if (words.first() == "granularity")
            store.setDescriptionSettingsValue("Granularity", rest);
        else if (words.first() == "user")
            user(words.at(1), text.section(' ', 2));
        else if (words.first() == "sibling")
            user("costackpath", words.at(2), "CANopen Olvenmark " + words.at(1));
        else if (words.first() == "feature")
            feature(words.at(1), text.section(' ', 2));
        else if (words.first() == "object")
            object(index, words.at(2).toInt());
        else if (words.first() == "variable")
            variable(index, quint16(words.at(2).toUInt()), words.at(3));
        else if (words.first() == "record")
            record(index, words.mid(3), words.at(2));
        else if (words.first() == "put")
            put(index, sub, words.at(2), text.section(' ', 3));
        else if (words.first() == "j1939")
            store.setJ1939SettingsValue(rest.section('=', 0, 0), rest.section('=', 1));
        else if (words.first() == "group")
            group(words.at(1) == "tx" ? 0x55 : 0x77, words.at(2).toUInt(nullptr, 0),
                  words.value(3) == "safe", words.mid(4));
        else if (words.first() == "remove" && words.at(1).contains(':'))
            store.delSubIndex(0, index, sub, true);
        else if (words.first() == "remove")
            store.delIndex(0, index, true);
        else
            qFatal("no such change: %s", qPrintable(text));
    }

    Sub get(quint16 index, quint8 sub) const
    {
        Sub data;
        store.getSubIndexData(0, index, sub, data);
        return data;
    }

    StoreFixture files;
    ObjectDataBase store;

private:
    static void user(const QString &key, const QVariant &value,
                     const QString &application = "CANopen Tessarine")
    {
        QSettings("Korvel", application).setValue("General/" + key, value);
    }
    void feature(const QString &name, const QString &elements)
    {
        QDir().mkpath(files.path("stack"));
        QFile file(files.path("stack/x_featureinfo_" + name + ".xml"));
        file.open(QIODevice::WriteOnly);
        file.write("<stack>" + elements.toUtf8() + "</stack>");
    }
    /// A parameter group with signals "<type>", or "<type>/<bits>", of variables "v"; the signals
    /// of a word "managed" have no variable.
    void group(quint8 direction, quint32 pgn, bool isSafe, const QStringList &signalTypes)
    {
        ObjectDataBase::PGN data;
        data.direction = direction;
        data.isSafe = isSafe;
        store.addPGN(0, pgn, data);
        ObjectDataBase::SPN spn;
        spn.varName = "v";
        for (const QString &type : signalTypes) {
            if (type == "managed")
                spn.implementation = 0;
            if (type == "nameless")
                spn.varName = " ";
            spn.dataType = type.section('/', 0, 0).toUInt();
            spn.bitSize = quint16(type.section('/', 1).toUInt());
            if (spn.dataType == 0 && type != "0")
                continue;
            ++spn.pos;
            store.addSPN(0, pgn, direction, quint32(spn.pos), spn);
        }
    }
    void object(quint16 index, int code)
    {
        ObjectDataBase::INDEX_DATA_T data;
        data.objectCode = Code(code);
        store.addIndex(0, index, data);
    }
    void variable(quint16 index, quint16 type, const QString &access)
    {
        object(index, int(Code::Var));
        Sub sub = makeSub("Value", type, "0");
        sub.accessType = access;
        sub.pdoMapping = PDOMapping(PDOMappingType::Optional);
        store.addSubIndex(0, index, 0, sub);
    }
    /// An object with a count of entries and the entries' values, of type UNSIGNED32.
    void record(quint16 index, const QStringList &values, const QString &access)
    {
        object(index, int(Code::Record));
        Sub count = makeSub("Count", 5, QString::number(values.size()));
        count.accessType = access == "rw" ? "rw" : "const";
        count.implementation = access == "rw" ? 0 : 1;
        store.addSubIndex(0, index, 0, count);
        for (int i = 0; i < values.size(); ++i) {
            Sub entry = makeSub("Entry", 7, values.at(i));
            entry.accessType = access;
            store.addSubIndex(0, index, quint8(i + 1), entry);
        }
    }
    void put(quint16 index, quint8 sub, const QString &field, const QString &value)
    {
        Sub data = get(index, sub);
        const QMap<QString, QString Sub::*> texts = {
            {"value", &Sub::defaultValue},   {"access", &Sub::accessType}, {"name", &Sub::name},
            {"varname", &Sub::varName},      {"low", &Sub::lowLimit},      {"high", &Sub::upLimit},
            {"denotation", &Sub::denotation}};
        const auto number = quint8(value.toUInt());
        if (texts.contains(field))
            data.*texts.value(field) = value;
        else if (field == "implementation")
            data.implementation = number;
        else if (field == "in_eds")
            data.defaultInEds = number;
        else if (field == "write_to_eds")
            data.writeDefaultToEds = number;
        else if (field == "mapping")
            data.pdoMapping = PDOMapping::fromUInt(number);
        else
            qFatal("no such field: %s", qPrintable(field));
        data.limitInEds |= field == "low";
        store.addSubIndex(0, index, sub, data);
    }
};
