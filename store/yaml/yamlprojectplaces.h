// Places in the YAML form of a project.
#pragma once

#include "formats/yamldocument.h"
#include "store/projectplaces.h"

#include <QHash>
#include <QMultiHash>

/// Reads the file once, at the first question, and looks through the objects or frames of a line at
/// the first one about them. A value that an alias or a merged map brings in is where it stands.
class YamlProjectPlaces : public ProjectPlaces
{
public:
    explicit YamlProjectPlaces(const QString &file) : fileName(file) {}

    int lineOf(const ProjectPlace &place) override;

private:
    using Entry = YamlNode::Entry;

    /// What a line of the device has, by its number.
    struct Line {
        Entry entry;
        bool isIndexed = false;
        QHash<qint64, Entry> objects;
        QMultiHash<qint64, Entry> frames; ///< of both protocols and all directions
    };

    void read();
    /// Null if there is none.
    Line *lineAt(int number);
    static void index(Line &line);
    int lineOfSetting(const ProjectPlace &place) const;
    /// That of the map which would hold the setting.
    int lineOfStore(const ProjectPlace &place) const;
    static int lineOfObject(const Line &line, const ProjectPlace &place);
    static int lineOfFrame(const Line &line, const ProjectPlace &place);

    QString fileName;
    bool isRead = false;
    YamlDocument document;
    QHash<qint64, Line> lines;
};
