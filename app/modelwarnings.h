// What of a project's model no generated file can hold as it is meant.
#pragma once

#include "app/generatorsteps.h"
#include "check/settingscheck.h"
#include "generators/objdict/vobjdictgenerator.h"
#include "store/projectplaces.h"

#include <functional>

/// Tells of it on standard error, beside the messages of the check, which speak of what a protocol
/// demands. Made once for a run, when the caches of its lines are filled; no statement runs.
class ModelWarnings
{
public:
    using Place = SettingsCheck::Place;
    /// Asked only for what is told.
    using Locate = std::function<Place(const ProjectPlace &)>;

    /// \a database and \a project must outlive this. Headers are looked for in \a headerFolders.
    ModelWarnings(const ObjectDataBase &database, const ProjectFacts &project, Locate locator,
                  const QStringList &headerFolders);

    void run() const;

private:
    template <class Frame>
    void checkSignals(quint8 line) const;
    /// Of a line with another protocol.
    template <class Frame>
    void checkNoFrames(quint8 line, const QString &protocol) const;
    template <class Frame>
    void checkMembers(quint8 line, quint32 frame, quint8 direction) const;
    void checkVirtualObjects(quint8 line) const;
    /// Empty if there is a place for the value.
    QString whyWithoutValue(quint8 line, quint16 index, quint16 dataType) const;
    void checkStart(quint8 line) const;
    void checkHeaders() const;
    void checkVariables() const;
    void tell(const char *rule, const ProjectPlace &place, const QString &text) const;

    const ObjectDataBase &store;
    const ProjectFacts &facts;
    Locate locate;
    QStringList folders;
    QList<quint8> generatedLines;
    VobjDict::Counted virtualValues;
};
