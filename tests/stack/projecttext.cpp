// Reads projects from short tables of text.
#include "tests/stack/projecttext.h"

#include "support/cohelper.h"

namespace
{

class Builder
{
public:
    explicit Builder(ObjectDataBase &database) : store(database) {}

    void row(const QString &text)
    {
        const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.isEmpty())
            return;
        if (words.first() == QLatin1String("line"))
            startLine(words.at(1).toUShort());
        else if (words.first() == QLatin1String("uds"))
            diagnosticService(words);
        else if (words.first() == QLatin1String("set"))
            for (const QString &word : words.mid(1))
                setting(word);
        else if (words.first() == QLatin1String("tx") || words.first() == QLatin1String("rx"))
            group(words);
        else if (words.first() == QLatin1String("spn"))
            signal(words);
        else if (words.first() == QLatin1String("txid") || words.first() == QLatin1String("rxid"))
            identifier(words);
        else if (words.first() == QLatin1String("item"))
            item(words);
        else if (words.first() == QLatin1String("pdo"))
            communicationParameters(words);
        else if (isAddress(words.first()) && words.size() > 3)
            subindices(words);
        else if (isAddress(words.first()))
            object(words.first().toUShort(nullptr, 16), words.at(1));
        else
            setting(text);
    }

private:
    static bool isAddress(const QString &word)
    {
        bool ok = false;
        (void)word.section(QLatin1Char(':'), 0, 0).toUShort(&ok, 16); // the test alone counts
        return ok && !word.contains(QLatin1Char('='));
    }

    void startLine(quint16 number)
    {
        line = static_cast<quint8>(number);
        if (!store.existNode(line))
            store.addNode(line, NodeData());
        store.setGeneralSettingsValue(QStringLiteral("line%1type").arg(line), QStringLiteral("1"));
    }

    void diagnosticService(const QStringList &words)
    {
        const quint8 service = words.at(1).toUShort() & 0xFF;
        store.setUDSServiceActive(line, service, true);
        store.setUDSServiceSessions(line, service, words.at(2));
        store.setUDSServiceUserLevels(line, service, words.value(3));
    }

    void setting(const QString &text)
    {
        const QString key = text.section(QLatin1Char('='), 0, 0).trimmed();
        const QString value = text.section(QLatin1Char('='), 1);
        if (key.startsWith(QLatin1String("misc:")))
            store.setMiscSettingsValue(key.mid(5), value);
        else if (key.startsWith(QLatin1String("j1939:")))
            store.setJ1939SettingsValue(key.mid(6), value);
        else
            store.setGeneralSettingsValue(key, value);
    }

    void object(quint16 index, const QString &kind)
    {
        static const QMap<QString, int> kinds = {{"var", 7}, {"arr", 8}, {"rec", 9}, {"dom", 2}};
        IndexData data;
        (void)store.getIndexData(line, index, data); // a new one starts from the defaults
        data.objectCode = static_cast<CANopen::ObjectCode>(kinds.value(kind, kind.toInt()));
        store.addIndex(line, index, data);
    }

    void communicationParameters(const QStringList &words)
    {
        static const QStringList parameters = {"1 U32", "2 U8", "3 U16", "5 U16", "6 U8"};
        const int count = words.size() - 2;
        row(QStringLiteral("%1:0 U8 const 1 %2")
                .arg(words.at(1), parameters.at(count - 1).left(1)));
        for (int i = 0; i < count; ++i)
            row(QStringLiteral("%1:%2 rw 0 %3")
                    .arg(words.at(1), parameters.at(i), words.at(i + 2)));
    }

    void subindices(QStringList words)
    {
        const quint16 index = words.at(0).section(QLatin1Char(':'), 0, 0).toUShort(nullptr, 16);
        const QString subs = words.at(0).section(QLatin1Char(':'), 1);
        quint8 sub = subs.section(QLatin1String(".."), 0, 0).toUShort() & 0xFF;
        if (!subs.contains(QLatin1String(".."))) {
            subindex(words, index, sub);
            return;
        }
        for (const QString &value : words.at(4).split(QLatin1Char(','))) {
            words[4] = value;
            subindex(words, index, sub++);
        }
    }

    void subindex(const QStringList &words, quint16 index, quint8 sub)
    {
        SubIndexData data;
        data.name = QStringLiteral("entry %1").arg(sub);
        data.dataType = COHelper::mapDataTypeString(words.at(1));
        data.accessType = words.at(2);
        data.implementation = static_cast<quint8>(words.at(3).toUShort());
        if (words.at(4) != QLatin1String("-"))
            data.defaultValue =
                QString(words.at(4)).replace(QLatin1String("%20"), QLatin1String(" "));
        for (const QString &flag : words.mid(5))
            applyFlag(data, flag.section(QLatin1Char('='), 0, 0),
                      flag.section(QLatin1Char('='), 1));
        if (!store.existIndex(line, index))
            object(index, sub == 0 ? QStringLiteral("var") : QStringLiteral("arr"));
        else if (sub == 1)
            makeArray(index);
        store.addSubIndex(line, index, sub, data);
    }

    void makeArray(quint16 index)
    {
        IndexData data;
        if (store.getIndexData(line, index, data) && data.objectCode == CANopen::ObjectCode::Var)
            object(index, QStringLiteral("arr"));
    }

    static void applyFlag(SubIndexData &data, const QString &flag, const QString &value)
    {
        if (flag == QLatin1String("map"))
            data.pdoMapping = PDOMapping(PDOMappingType::Optional);
        else if (flag == QLatin1String("nv"))
            data.nvStorage = true;
        else if (flag == QLatin1String("shared"))
            data.sharedLines = true;
        else if (flag == QLatin1String("nodef"))
            data.defaultInEds = false;
        else if (flag == QLatin1String("size"))
            data.size = value.toUInt();
        else if (flag == QLatin1String("var"))
            data.varName = value;
        else if (flag == QLatin1String("lim")) {
            data.limitInEds = true;
            data.lowLimit = value.section(QLatin1String(".."), 0, 0);
            data.upLimit = value.section(QLatin1String(".."), 1);
        }
    }

    void group(const QStringList &words)
    {
        current = PgnData();
        current.direction = words.first() == QLatin1String("tx") ? 0x55 : 0x77;
        current.number = words.at(1).toUInt();
        current.name = QStringLiteral("group %1").arg(current.number);
        current.cycleTimeMs = words.value(2).toUShort();
        current.inhibitTimeMs = words.value(3).toUShort();
        current.priority = static_cast<quint8>(words.value(4).toUShort());
        current.isSafe = words.contains(QLatin1String("safe")) ? 1 : 0;
        const QStringList fd = words.filter(QLatin1String("fd=")).join(QString()).mid(3).split(',');
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
        currentId.direction = words.first() == QLatin1String("txid") ? 0x55 : 0x77;
        currentId.id = words.at(1).toUInt();
        currentId.cycleTimeMs = words.value(2).toUShort();
        currentId.inhibitTimeMs = words.value(3).toUShort();
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
        data.name = QStringLiteral("signal %1").arg(words.at(1));
        data.dataType = COHelper::mapDataTypeString(words.at(2));
        data.implementation = words.at(3).toUInt();
        for (const QString &flag : words.mid(4)) {
            const QString value = flag.section(QLatin1Char('='), 1);
            if (flag.startsWith(QLatin1String("var=")))
                data.varName = value;
            else if (flag.startsWith(QLatin1String("value=")))
                data.defaultValue = value;
            else
                data.bitSize = value.toUShort();
        }
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
    for (const QString &row : text.split(QLatin1Char('\n')))
        builder.row(row.trimmed());
    store.commitBatch();
}
