// A project that is built from words, and the sections of gen_define.h that come of it.
#pragma once

#include "generators/defines/definecontext.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>

/// A new project with line 0 of type 1.
class DefineProject
{
public:
    explicit DefineProject(const QString &texts = QString())
    {
        store.createNewDataBase();
        change("set line0type=1; " + texts);
    }

    /// Changes in words, separated by "; ". Objects are hexadecimal, "1/2000" one of line 1:
    ///   set key=value, j1939 key=value, misc key=value, describe key=value, eb key=value
    ///   line NUMBER TYPE, unline NUMBER
    ///   var INDEX VALUE, array INDEX ENTRIES, record INDEX ENTRIES
    ///   put INDEX:SUB type|access|value|kind VALUE
    ///   pgn LINE tx|rx NUMBER [safe|inhibit=MS], canid LINE tx|rx NUMBER [inhibit=MS]
    ///   uds LINE SERVICE on|off, edition NAME: of the tool
    void change(const QString &texts)
    {
        for (const QString &text : texts.split("; ", Qt::SkipEmptyParts))
            changeOne(text.split(' '), text.section(' ', 1));
    }

    DefineContext context(TextWriter &out, const DefineDialect &dialect = classic)
    {
        for (const quint8 line : store.getNodes())
            store.cacheAllSubs(line, 0);
        return DefineContext(store, out, dialect);
    }

    /// What a section writes.
    QString text(void (*section)(DefineContext &), const DefineDialect &dialect = classic,
                 bool isMultiProtocol = false)
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        TextWriter out(&buffer);
        DefineContext facts = context(out, dialect);
        facts.multiProtocol = isMultiProtocol;
        section(facts);
        out.finish();
        return QString::fromUtf8(buffer.data());
    }

    StoreFixture files;
    ObjectDataBase store;

    static constexpr DefineDialect classic = classicDefineDialect();
    static constexpr DefineDialect v4 = v4DefineDialect();

private:
    void changeOne(const QStringList &words, const QString &rest)
    {
        const QString key = rest.section('=', 0, 0);
        const QString value = rest.section('=', 1);
        const QString &verb = words.first();
        if (verb == "set")
            store.setGeneralSettingsValue(key, value);
        else if (verb == "j1939")
            store.setJ1939SettingsValue(key, value);
        else if (verb == "misc")
            store.setMiscSettingsValue(key, value);
        else if (verb == "describe")
            store.setDescriptionSettingsValue(key, value);
        else if (verb == "eb")
            store.setEnergyBusSettingsValue(key, value);
        else if (verb == "edition")
            QCoreApplication::setApplicationName(rest);
        else if (verb == "uds")
            store.setUDSServiceActive(quint8(words.at(1).toUInt()), quint8(words.at(2).toUInt()),
                                      words.at(3) == "on");
        else if (verb == "line" && store.addNode(quint8(words.at(1).toUInt()), Node()))
            store.setGeneralSettingsValue("line" + words.at(1) + "type", words.at(2));
        else if (verb == "unline")
            store.delNode(quint8(words.at(1).toUInt()));
        else if (verb == "pgn" || verb == "canid")
            addTraffic(words);
        else
            changeObject(words);
    }

    void addTraffic(const QStringList &words)
    {
        const QString direction = QString::number(words.at(2) == "tx" ? 0x55 : 0x77);
        const QString extra = words.value(4);
        const QString inhibit = extra.startsWith("inhibit=") ? extra.section('=', 1) : "0";
        if (words.first() == "canid") {
            store.executeSql(QStringLiteral("insert into CANIDs%1 (id, direction, inhibittime_ms) "
                                            "values (%2, %3, %4)")
                                 .arg(words.at(1), words.at(3), direction, inhibit));
            return;
        }
        store.executeSql(QStringLiteral("insert into PGNs%1 (number, direction, issafe, "
                                        "inhibittime_ms) values (%2, %3, %4, %5)")
                             .arg(words.at(1), words.at(3), direction,
                                  QString::number(extra == "safe"), inhibit));
    }

    void changeObject(const QStringList &words)
    {
        static const QMap<QString, CANopen::ObjectCode> codes = {
            {"var", CANopen::ObjectCode::Var},
            {"array", CANopen::ObjectCode::Array},
            {"record", CANopen::ObjectCode::Record}};
        const QString place = words.at(1).section('/', -1);
        const quint8 line = words.at(1).contains('/') ? quint8(words.at(1).at(0).digitValue()) : 0;
        const auto index = quint16(place.section(':', 0, 0).toUInt(nullptr, 16));
        const auto sub = quint8(place.section(':', 1).toUInt());
        if (codes.contains(words.first()))
            addObject(line, index, codes.value(words.first()), words.value(2));
        else if (words.first() == "put")
            put(line, index, sub, words.at(2), words.at(3));
        else
            qFatal("no such change: %s", qPrintable(words.join(' ')));
    }

    /// \a value is that of the first subindex, in other objects than variables the entries' number.
    void addObject(quint8 line, quint16 index, CANopen::ObjectCode code, const QString &value)
    {
        Object object;
        object.objectCode = code;
        store.addIndex(line, index, object);
        const bool isVariable = code == CANopen::ObjectCode::Var;
        store.addSubIndex(line, index, 0, makeSub("first", isVariable ? 7 : 5, value));
        for (int sub = 1; !isVariable && sub <= value.toInt(); ++sub)
            store.addSubIndex(line, index, quint8(sub), makeSub("entry", 7, "0"));
    }

    void put(quint8 line, quint16 index, quint8 sub, const QString &field, const QString &value)
    {
        Sub data = makeSub("new", 7, "0");
        store.getSubIndexData(line, index, sub, data);
        if (field == "type")
            data.dataType = quint16(value.toUInt());
        else if (field == "access")
            data.accessType = value;
        else if (field == "value")
            data.defaultValue = value;
        else if (field == "kind")
            data.implementation = quint8(value.toUInt());
        else
            qFatal("no such field: %s", qPrintable(field));
        store.addSubIndex(line, index, sub, data);
    }
};
