// Reads projects from short tables of text.
#include "tests/stack/projecttext.h"

#include "support/cohelper.h"

#include <QUrl>

namespace
{

/// Blanks and line ends in a text stand as %20 and %0a.
QString decoded(const QString &text)
{
    return QUrl::fromPercentEncoding(text.toUtf8());
}

/// The value of the word "key=value" among others, else \a usual.
QString flagValue(const QStringList &words, const QString &key, const QString &usual = QString())
{
    for (const QString &word : words) {
        if (word.startsWith(key + '='))
            return decoded(word.section('=', 1));
    }
    return usual;
}

void applyMetadata(Metadata &metadata, const QString &text)
{
    if (!text.isEmpty())
        metadata.insert(text.section(':', 0, 0), text.section(':', 1));
}

class Builder
{
public:
    explicit Builder(ObjectDataBase &database) : store(database) {}

    void row(const QString &text)
    {
        using Handler = void (Builder::*)(const QStringList &words);
        static const QMap<QString, Handler> handlers = {
            {"line", &Builder::startLine},  {"uds", &Builder::diagnosticService},
            {"set", &Builder::settings},    {"tx", &Builder::group},
            {"rx", &Builder::group},        {"spn", &Builder::signal},
            {"txid", &Builder::identifier}, {"rxid", &Builder::identifier},
            {"item", &Builder::item},       {"pdo", &Builder::communicationParameters}};
        const QStringList words = text.split(' ', Qt::SkipEmptyParts);
        if (words.isEmpty() || words.first() == "#")
            return;
        const QString first = words.first();
        bool isAddress = false;
        (void)first.section(':', 0, 0).toUShort(&isAddress, 16); // the test alone counts
        if (handlers.contains(first))
            (this->*handlers.value(first))(words);
        else if (!isAddress || first.contains('='))
            setting(text);
        else if (first.contains(':'))
            subindices(words);
        else
            object(first.toUShort(nullptr, 16), words.at(1), words.mid(2));
    }

private:
    void startLine(const QStringList &words)
    {
        line = static_cast<quint8>(words.at(1).toUShort());
        if (!store.existNode(line))
            store.addNode(line, NodeData());
        store.setGeneralSettingsValue(QString("line%1type").arg(line), "1");
    }

    void diagnosticService(const QStringList &words)
    {
        const quint8 service = words.at(1).toUShort() & 0xFF;
        store.setUDSServiceActive(line, service, words.value(2) != "off");
        store.setUDSServiceSessions(line, service, decoded(words.value(2)));
        store.setUDSServiceUserLevels(line, service, words.value(3));
    }

    void settings(const QStringList &words)
    {
        for (const QString &word : words.mid(1))
            setting(word);
    }

    void setting(const QString &text)
    {
        const QString key = text.section('=', 0, 0).trimmed();
        const QString value = decoded(text.section('=', 1));
        const QString name = key.section(':', 1);
        if (key.startsWith("misc:"))
            store.setMiscSettingsValue(name, value);
        else if (key.startsWith("j1939:"))
            store.setJ1939SettingsValue(name, value);
        else if (key.startsWith("text:"))
            describe(name, value);
        else
            store.setGeneralSettingsValue(key, value);
    }

    void describe(const QString &key, const QString &value)
    {
        store.setDescriptionSettingsLine(line);
        store.setDescriptionSettingsValue(key, value);
    }

    void object(quint16 index, const QString &kind, const QStringList &flags = {})
    {
        static const QMap<QString, int> kinds = {{"var", 7}, {"arr", 8}, {"rec", 9}, {"dom", 2}};
        IndexData data;
        (void)store.getIndexData(line, index, data); // a new one starts from the defaults
        data.objectCode = static_cast<CANopen::ObjectCode>(kinds.value(kind, kind.toInt()));
        data.name = flagValue(flags, "name", data.name);
        data.description = flagValue(flags, "desc", data.description);
        const QString type = flagValue(flags, "type");
        data.dataType = type.isEmpty() ? data.dataType : COHelper::mapDataTypeString(type);
        applyMetadata(data.metadata, flagValue(flags, "meta"));
        store.addIndex(line, index, data);
    }

    void communicationParameters(const QStringList &words)
    {
        static const QStringList parameters = {"1 U32", "2 U8", "3 U16", "5 U16", "6 U8"};
        const int count = words.size() - 2;
        row(QString("%1:0 U8 const 1 %2").arg(words.at(1), parameters.at(count - 1).left(1)));
        for (int i = 0; i < count; ++i)
            row(QString("%1:%2 rw 0 %3").arg(words.at(1), parameters.at(i), words.at(i + 2)));
    }

    void subindices(QStringList words)
    {
        const quint16 index = words.at(0).section(':', 0, 0).toUShort(nullptr, 16);
        const QString subs = words.at(0).section(':', 1);
        quint8 sub = subs.section("..", 0, 0).toUShort() & 0xFF;
        if (!subs.contains("..")) {
            subindex(words, index, sub);
            return;
        }
        for (const QString &value : words.at(4).split(',')) {
            words[4] = value;
            subindex(words, index, sub++);
        }
    }

    void subindex(const QStringList &words, quint16 index, quint8 sub)
    {
        SubIndexData data;
        data.name = QString("entry %1").arg(sub);
        data.dataType = COHelper::mapDataTypeString(words.at(1));
        data.accessType = words.at(2);
        data.implementation = static_cast<quint8>(words.at(3).toUShort());
        if (words.at(4) != "-")
            data.defaultValue = decoded(words.at(4));
        applyFlags(data, words.mid(5));
        if (!store.existIndex(line, index))
            object(index, sub == 0 ? "var" : "arr");
        else if (sub == 1)
            makeArray(index);
        store.addSubIndex(line, index, sub, data);
    }

    void makeArray(quint16 index)
    {
        IndexData data;
        if (store.getIndexData(line, index, data) && data.objectCode == CANopen::ObjectCode::Var)
            object(index, "arr");
    }

    static void applyFlags(SubIndexData &data, const QStringList &flags)
    {
        static const QMap<QString, QString SubIndexData::*> texts = {
            {"name", &SubIndexData::name},
            {"desc", &SubIndexData::description},
            {"shown", &SubIndexData::denotation},
            {"var", &SubIndexData::varName}};
        for (auto text = texts.begin(); text != texts.end(); ++text)
            data.*text.value() = flagValue(flags, text.key(), data.*text.value());
        const quint32 usualMapping = flags.contains("map") ? 2 : 0;
        data.pdoMapping =
            PDOMapping::fromUInt(flagValue(flags, "map", QString::number(usualMapping)).toUInt());
        data.nvStorage = flags.contains("nv");
        data.sharedLines = flags.contains("shared");
        data.defaultInEds = !flags.contains("nodef");
        data.size = flagValue(flags, "size").toUInt();
        data.writeDefaultToEds = static_cast<quint8>(flagValue(flags, "eds", "1").toUShort());
        applyMetadata(data.metadata, flagValue(flags, "meta"));
        const QString limits = flagValue(flags, "lim");
        data.limitInEds = !limits.isEmpty();
        if (data.limitInEds) {
            data.lowLimit = limits.section("..", 0, 0);
            data.upLimit = limits.section("..", 1);
        }
    }

    void group(const QStringList &words)
    {
        current = PgnData();
        current.direction = words.first() == "tx" ? 0x55 : 0x77;
        current.number = words.at(1).toUInt();
        current.name = flagValue(words, "name", QString("group %1").arg(current.number));
        current.cycleTimeMs = words.value(2).toUShort();
        current.inhibitTimeMs = words.value(3).toUShort();
        current.priority = static_cast<quint8>(words.value(4).toUShort());
        current.isSafe = words.contains("safe") ? 1 : 0;
        const QStringList fd = flagValue(words, "fd").split(',');
        current.fdTrailerFormat = fd.value(0).toUInt();
        current.fdAssuranceType = fd.value(1).toUInt();
        current.fdAssuranceDataSize = fd.value(2).toUInt();
        store.addPGN(line, current.number, current);
    }

    void signal(const QStringList &words)
    {
        SpnData spn;
        fill(spn, words, current.mappingCount);
        store.addSPN(line, current.number, current.direction, words.at(1).toUInt(), spn);
        ++current.mappingCount;
        store.addPGN(line, current.number, current);
    }

    void identifier(const QStringList &words)
    {
        currentId = CanIdData();
        currentId.direction = words.first() == "txid" ? 0x55 : 0x77;
        currentId.id = words.at(1).toUInt();
        currentId.cycleTimeMs = words.value(2).toUShort();
        currentId.inhibitTimeMs = words.value(3).toUShort();
        currentId.name = flagValue(words, "name", currentId.name);
        store.addCANID(line, currentId.id, currentId);
    }

    void item(const QStringList &words)
    {
        DataElementData element;
        fill(element, words, currentId.mappingCount);
        store.addDataElement(line, currentId.id, currentId.direction, words.at(1).toUInt(),
                             element);
        ++currentId.mappingCount;
        store.addCANID(line, currentId.id, currentId);
    }

    static void fill(SignalData &data, const QStringList &words, int place)
    {
        data.pos = static_cast<qint16>(place);
        data.name = flagValue(words, "name", QString("signal %1").arg(words.at(1)));
        data.dataType = COHelper::mapDataTypeString(words.at(2));
        data.implementation = words.at(3).toUInt();
        data.varName = flagValue(words, "var");
        data.defaultValue = flagValue(words, "value", data.defaultValue);
        data.bitSize = flagValue(words, "bits").toUShort();
    }

    ObjectDataBase &store;
    quint8 line = 0;
    PgnData current; ///< that the next signal belongs to
    CanIdData currentId;
};

} // namespace

void buildProject(ObjectDataBase &store, const QString &text)
{
    store.beginBatch();
    Builder builder(store);
    for (const QString &row : text.split('\n'))
        builder.row(row.trimmed());
    store.commitBatch();
}
