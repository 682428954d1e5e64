// Rows of the object dictionary.
#include "generators/overview/objectfacts.h"

#include "generators/objdict/objectnames.h"
#include "store/objectdatabase.h"
#include "support/cohelper.h"
#include "support/helper.h"

#include <QHash>

#include <array>

namespace
{

using namespace Overview;

struct LastWord {
    quint32 number = 0;
    int text = -1;
};

class Rows
{
public:
    Rows(const ObjectDataBase &database, Line &to, const ObjectNames &allNames, Texts &allTexts)
        : store(database), line(to), names(allNames), texts(allTexts)
    {
    }

    void read();

private:
    void addObject(quint16 index);
    void startRow(quint16 index, std::optional<quint8> sub);
    void put(ObjectText place, const QString &text) { row()[place] = texts.numberOf(text); }
    /// The word for a number, which \a makeWord makes once.
    template <class MakeWord>
    void putWord(ObjectText place, quint32 number, const MakeWord &makeWord);
    ObjectRow &row() { return *lastRow; }
    /// Rows ask in the order of the names.
    void putIdentifier(quint8 sub);
    void putObject(const IndexData &object);
    void putSubIndex(const SubIndexData &data);

    const ObjectDataBase &store;
    Line &line;
    const ObjectNames &names;
    std::vector<ObjectName>::const_iterator nextName = names.objects.begin();
    Texts &texts;
    ObjectRow *lastRow = nullptr;
    QHash<quint64, int> words;                    ///< texts by column and number
    std::array<LastWord, kObjectTexts> lastWords; ///< of the row before, by column
};

template <class MakeWord>
void Rows::putWord(ObjectText place, quint32 number, const MakeWord &makeWord)
{
    LastWord &last = lastWords[size_t(place)];
    if (last.text < 0 || last.number != number) {
        int &text = words[quint64(place) << 32 | number]; // no word is empty
        if (text == 0)
            text = texts.numberOf(makeWord());
        last = {number, text};
    }
    row()[place] = last.text;
}

void Rows::startRow(quint16 index, std::optional<quint8> sub)
{
    ObjectRow next;
    next.index = index;
    next.sub = sub;
    line.rows.append(next);
    lastRow = &line.rows.last();
}

QString storageOf(const SubIndexData &data)
{
    const QString kind = COHelper::implementation2String(data.implementation);
    return data.nvStorage ? kind + QLatin1String(", non-volatile") : kind;
}

void Rows::putIdentifier(quint8 sub)
{
    const auto place = std::pair(row().index, sub);
    const auto placeOf = [](const ObjectName &name) { return std::pair(name.index, name.sub); };
    while (nextName != names.objects.end() && placeOf(*nextName) < place)
        ++nextName;
    if (nextName == names.objects.end() || placeOf(*nextName) != place)
        return;
    if (!nextName->text.isEmpty())
        row()[ObjectText::Identifier] = texts.add(names.prefix + nextName->text);
}

void Rows::putObject(const IndexData &object)
{
    put(ObjectText::Name, Helper::substituteVariables(object.name, row().index, 0));
    putWord(ObjectText::Code, quint32(object.objectCode),
            [&] { return COHelper::objectCode2String(object.objectCode); });
    put(ObjectText::Description, object.description);
    putIdentifier(0);
}

void Rows::putSubIndex(const SubIndexData &data)
{
    putWord(ObjectText::Type, data.dataType,
            [&] { return COHelper::index2DataTypeString(data.dataType); });
    put(ObjectText::Access, data.accessType);
    put(ObjectText::Default, data.defaultValue);
    if (data.limitInEds) {
        put(ObjectText::Low, data.lowLimit);
        put(ObjectText::High, data.upLimit);
    }
    if (data.pdoMapping != PDOMappingType::No)
        putWord(ObjectText::Pdo, data.pdoMapping.toUInt(),
                [&] { return COHelper::pdoMapping2String(data.pdoMapping); });
    putWord(ObjectText::Storage, quint32(data.implementation) << 1 | quint32(data.nvStorage),
            [&] { return storageOf(data); });
    put(ObjectText::Variable, data.varName);
    if (!data.description.isEmpty())
        put(ObjectText::Description, data.description);
}

void Rows::addObject(quint16 index)
{
    IndexData object;
    (void)store.getIndexData(line.number, index, object); // or the defaults
    const bool isPlain = object.objectCode == CANopen::ObjectCode::Var;
    if (!isPlain) {
        startRow(index, std::nullopt);
        putObject(object);
    }
    store.visitSubIndices(line.number, index, 0, [&](quint8 sub, const SubIndexData &data) {
        startRow(index, sub);
        if (isPlain && sub == 0)
            putObject(object);
        else
            put(ObjectText::Name, Helper::substituteVariables(data.name, index, sub));
        putSubIndex(data);
        if (sub > 0)
            putIdentifier(sub);
        ++line.subindices;
    });
    if (line.rows.isEmpty() || row().index != index) { // no subindex at all
        startRow(index, std::nullopt);
        putObject(object);
    }
}

void Rows::read()
{
    const QList<quint16> indices = store.getIndices(line.number, ObjectRanges::kAll);
    line.objects = indices.size();
    for (const quint16 index : indices)
        addObject(index);
}

} // namespace

void Overview::readObjects(const ObjectDataBase &store, Line &line, const ObjectNames &names,
                           Texts &texts)
{
    Rows(store, line, names, texts).read();
}
