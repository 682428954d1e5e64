// Places in the text form of a project.
#pragma once

#include "formats/initext.h"
#include "store/projectplaces.h"

#include <QByteArray>
#include <QHash>

/// Reads the text once, at the first question, and at the first one about an object the keys of
/// all.
class TextProjectPlaces : public ProjectPlaces
{
public:
    explicit TextProjectPlaces(const QString &file) : fileName(file) {}

    int lineOf(const ProjectPlace &place) override;

private:
    using Row = quint64; ///< line of the device, index, and subindex or kObject
    static constexpr int kObject = 0x100;
    static Row row(int line, int index, int subindex);

    void read();
    void readRows();
    void readRows(const QString &group, const QVector<IniText::Entry> &entries);
    const char *find(const ProjectPlace &place) const;
    const char *findSetting(const ProjectPlace &place) const;
    const char *findInRow(Row key, const QString &column) const;
    const char *findLine(int line) const;

    QString fileName;
    bool isRead = false;
    bool hasRows = false; ///< most projects have findings about their lines only
    QByteArray text;      ///< all below stands in it
    IniText::LineNumbers lines{text};
    IniText::Sections groups;
    IniText::Outline outline;
    QHash<Row, QVector<IniText::Entry>> rows; ///< in the order of the text
};
