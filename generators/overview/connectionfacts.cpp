// Ways of values between lines.
#include "generators/overview/connectionfacts.h"

#include "generators/frames/canopenframes.h"
#include "generators/overview/links.h"
#include "store/objectdatabase.h"

#include <QHash>

namespace
{

using namespace Overview;

struct Place {
    quint8 line;
    quint16 index;
    quint8 sub;
};

class Reader
{
public:
    explicit Reader(const ObjectDataBase &database) : store(database) {}

    QVector<Connection> read();

private:
    End endAt(const Place &place) const;
    void addLinks();
    void findTies();
    QVector<End> endsOf(qint32 signal) const;
    void addSignals();
    void addGroups();

    const ObjectDataBase &store;
    QMultiHash<qint32, Place> ties; ///< subindices by the signal that they are tied to
    QVector<Connection> found;
};

End Reader::endAt(const Place &place) const
{
    IndexData object;
    SubIndexData data;
    const bool isThere = store.getIndexData(place.line, place.index, object) &&
                         store.getSubIndexData(place.line, place.index, place.sub, data);
    const QString link = linkTo(place.line, place.index, place.sub);
    return {place.line, link,
            isThere ? Frames::nameOf(object, data) : link.section(QLatin1Char('/'), 1)};
}

void Reader::addLinks()
{
    const auto links = store.getPDOConnections(true);
    for (const ConnectionData &link : links)
        found.append({endAt({link.prodNode, link.prodIndex, link.prodSub}),
                      endAt({link.conNode, link.conIndex, link.conSub}), QStringLiteral("PDO"),
                      QString()});
}

void Reader::findTies()
{
    const QList<quint8> lines = store.getNodes();
    for (const quint8 line : lines) {
        store.visitLine(line, [&](quint16 index, quint8 sub, const SubIndexData &data) {
            if (data.signalId != 0)
                ties.insert(data.signalId, {line, index, sub});
        });
    }
}

/// Where a signal has its value; the signal itself if no subindex is tied to it.
QVector<End> Reader::endsOf(qint32 signal) const
{
    QVector<End> ends;
    const QList<Place> places = ties.values(signal); // the last one first
    for (const Place &place : places)
        ends.prepend(endAt(place));
    LineSignalData data;
    if (ends.isEmpty() && store.getSignalData(signal, data))
        ends.append({data.line, QString(), data.name});
    return ends;
}

void Reader::addSignals()
{
    const QList<quint8> lines = store.getNodes();
    for (const quint8 line : lines) {
        const QList<qint32> ids = store.getSignals(line);
        if (!ids.isEmpty() && ties.isEmpty())
            findTies();
        for (const qint32 id : ids) {
            LineSignalData data;
            if (!store.getSignalData(id, data) || data.ref == 0)
                continue;
            for (const End &from : endsOf(data.ref)) {
                for (const End &to : endsOf(id))
                    found.append({from, to, QStringLiteral("signal"), data.name});
            }
        }
    }
}

void Reader::addGroups()
{
    const QStringList groups = store.getGroups();
    for (const QString &group : groups) {
        const QList<quint8> lines = store.getGroupNodes(group);
        for (const quint8 line : lines) {
            QString title;
            (void)store.getNodeName(line, title); // or none
            found.append({{line, QString(), title},
                          {std::nullopt, QString(), group},
                          QStringLiteral("group"),
                          QString()});
        }
    }
}

QVector<Connection> Reader::read()
{
    addLinks();
    addSignals();
    addGroups();
    return found;
}

} // namespace

QVector<Connection> Overview::readConnections(const ObjectDataBase &store)
{
    return Reader(store).read();
}
