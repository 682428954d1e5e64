// The check of the model: what would give a wrong device is reported before a file is written.
//
// One source a topic: modelchecker.cpp (reporting, settings), _objects (one object), _global (the
// project), _canopen and _canopen_pdo (a CANopen line), _j1939 (a J1939 line), _features (the
// installed stack).
#pragma once

#include "check/featurefile.h"
#include "check/messages.h"
#include "store/objectdatabase.h"
#include "store/projectfeatures.h"

#include <QObject>
#include <QPointer>
#include <QVector>

#include <functional>

/// A message as data, for reports that machines read.
struct Finding {
    Check::Msg rule;
    QStringList arguments; ///< of the message
    qint32 line = -1;      ///< -1: the whole project
    qint32 index = -1;     ///< -1: no object
    qint32 subindex = -1;  ///< -1: the object as a whole; of a mapping its entry
    qint32 group = -1;     ///< parameter group number; -1: none
    qint32 signal = -1;    ///< suspect parameter number; -1: the group as a whole

    /// The message without markup, with the words of its kind.
    QString text() const { return Check::plainText(Check::messageRow(rule), arguments); }
};

/// Walks a project and reports each finding as one line of text; never stops at one. The driver
/// makes one for the check of a project, calls startGlobalCheck() once and then the check of each
/// line. Runs on the main thread, in the caller's stack.
///
/// Reads go through the store's caches: with ObjectDataBase::cacheAllSubs() no statement runs. What
/// a record lacks counts as its default, and a text that is no number counts as 0.
class ModelChecker : public QObject
{
    Q_OBJECT

public:
    explicit ModelChecker(QObject *parent = nullptr);

    /// Number of errors of the project as a whole. Empties the setting PreviousToolVersion when its
    /// hints were given.
    qint32 startGlobalCheck(ObjectDataBase *store);

    /// Number of errors of the line. Sets \a corrected when it changed the project; never clears
    /// it. Lets the event loop run at each object.
    qint32 startCANopenCheck(quint8 lineNumber, ObjectDataBase *store, bool &corrected);

    /// Number of errors of the line, with those of a startCANopenCheck() that ran before on the
    /// same line. \a specialPgns are the groups that the stack handles itself; the line count is
    /// not looked at.
    qint32 startJ1939Check(quint8 lineCount, quint8 lineNumber, ObjectDataBase *store,
                           const QList<quint32> &specialPgns);

    /// Number of entries without a type that generated C can name. For a line that speaks no
    /// CANopen: its objects stand in the dictionary of the device all the same.
    qint32 startTypeCheck(quint8 lineNumber, ObjectDataBase *store);

    /// Number of errors in what the line asks of the installed stack; not part of a run.
    qint32 startCANopenFeatureCheck(quint8 lineNumber, ObjectDataBase *store);

    /// Warns of PDOs beside the pre-defined connection set (CiA 301, 7.3.5); always 0.
    qint32 doCANopenCOBCheck(quint8 lineNumber, ObjectDataBase *store);

    /// Check one object or subindex of the line that was checked last. \a corrected as above.
    void checkIndex(quint16 index, bool &corrected);
    void checkSub(quint16 index, quint8 subIndex, const SubIndexData &data,
                  CANopen::ObjectCode objectCode);

    /// Must subindex 0 hold the number of entries?
    bool checkSub0Required(quint8 lineNumber, quint16 index) const;
    /// Of a PDO mapping object: may it be changed at run time?
    bool isDynamicMapping(quint8 lineNumber, quint16 index) const;

    /// Do all \a values lie in the range of the type? Bounds are inclusive.
    static bool checkValues(CAN::CANopenDataType type, const QList<QVariant> &values);

    /// Range of an integer of \a bits bits; what does not fit into the results is the nearest
    /// number that does. Always true.
    static bool getLimitsByBits(quint8 bits, bool isUnsigned, qint64 &low, qint64 &high);

    /// The same COB-ID with bit 31, "PDO does not exist", set (CiA 301, 7.5.2.37). A text that is
    /// no COB-ID in hexadecimal comes back as it is.
    static QString disableCob(const QString &cobId);

    /// Are the signals of a parameter group laid out so that a safe message can carry them
    /// (SAE J1939-76)?
    bool checkSafePGNStructure(quint8 lineNumber, quint32 pgn, quint8 direction) const;

    /// All that was reported so far, in its order.
    const QVector<Finding> &findings() const { return found; }

signals:
    void newError(const QString &text);

private:
    static constexpr qint32 kLineUnderCheck = -2;

    /// What a finding is about; -1 for what it has none of.
    struct Place {
        qint32 index = -1;
        qint32 subindex = -1;
        qint32 line = kLineUnderCheck; ///< -1: the whole project
        qint32 group = -1;
        qint32 signal = -1;
    };

    /// A row of the pre-defined connection set.
    struct COB_VALUES_T {
        quint16 index;
        quint8 subindex;
        QString value;
    };

    /// What the PDO mapping objects of a line use, for the check of the mapping settings.
    struct MappingUse {
        bool bitwise = false;
        bool dynamic = false;
    };

    // --- reporting (modelchecker.cpp) ---

    /// Sends one message, counts it and keeps it as finding.
    void report(Check::Msg id, const Place &place, const QStringList &arguments = {});
    /// Reports and makes a change of the project, unless the user has switched corrections off;
    /// then nothing at all happens.
    void correct(bool &corrected, Check::Msg id, const Place &place, const QStringList &arguments,
                 const std::function<void()> &change);
    /// Places that messages name by "0x%1", and by "0x%1-0x%2".
    void reportObject(Check::Msg id, quint16 index);
    void reportSub(Check::Msg id, quint16 index, quint8 subIndex);

    /// The same for a group, whose number stands in decimal and in hexadecimal.
    void reportGroup(Check::Msg id, quint32 pgn);

    /// Makes \a store the project, as a check of any kind begins.
    void setProject(ObjectDataBase *store);
    /// Does so for a line, and starts a new count.
    void startLine(quint8 lineNumber, ObjectDataBase *store);
    /// Reads the user's settings. \a siblings are the tools whose stack path serves where this one
    /// has none, in order.
    void readUserSettings(const QStringList &siblings);

    /// Warns on standard error of a list by line that has no element for line \a number. The run
    /// goes on with what the setting's reader has for such a line.
    static void warnOfShortList(const QString &setting, const QString &list, quint8 number,
                                const QString &otherAdvice = {});

    // --- reading (modelchecker.cpp) ---

    // What generators ask as well stands in the features.
    qint32 decimalSetting(const char *key) const;
    qint32 decimalJ1939Setting(const char *key) const;
    quint32 numberSetting(const char *key) const; ///< decimal or hexadecimal
    QString lineEntry(const char *key) const;     ///< of a comma list; empty beyond its end
    bool hasIndex(quint16 index) const;
    bool hasSub(quint16 index, quint8 subIndex) const;
    QString textOf(quint16 index, quint8 subIndex) const;
    quint32 valueOf(quint16 index, quint8 subIndex) const;
    SubIndexData recordOf(quint16 index, quint8 subIndex) const; ///< the defaults if there is none
    int countEntries(quint16 index) const;                       ///< subindices from 1 on
    QList<quint16> indicesOf(ObjectRange range) const;
    /// All PDO mapping objects, those of receive PDOs first.
    QList<quint16> mappingObjects() const;

    // --- one object (modelchecker_objects.cpp) ---

    void checkEntryCount(quint16 index, const QList<quint8> &subs, bool &corrected);
    void checkSub0Attributes(quint16 index, bool &corrected);
    void checkImplementation(quint16 index, quint8 subIndex, const SubIndexData &data);
    void checkAccess(quint16 index, quint8 subIndex, const SubIndexData &data);
    void checkStrings(quint16 index, quint8 subIndex, const SubIndexData &data);
    void checkRanges(quint16 index, quint8 subIndex, const SubIndexData &data);

    // --- the project (modelchecker_global.cpp) ---

    void checkUdsExclusion(bool hasServer, bool hasClient);
    void checkBufferLists();
    void hintAtUpgrade(bool hasUds);

    // --- a CANopen line (modelchecker_canopen.cpp) ---

    void checkStack();
    void checkStackVersion(const QStringList &files);
    void checkLineSettings();
    void checkDeviceType();
    void checkMandatoryObjects();
    void checkSlaveAssignment();
    void checkGaps();
    void checkAutoStore();
    void checkNmtInhibit();
    void checkIdentity();
    void checkDependentObjects();
    void checkAllObjects(bool &corrected);

    // --- its PDOs and SRDOs (modelchecker_canopen_pdo.cpp) ---

    void checkMappingObjects(bool &corrected, MappingUse &use);
    void checkMappingFrame(quint16 index);
    /// Adds up the bits of the active entries.
    quint16 checkMappingEntries(quint16 index, MappingUse &use);
    void checkMappingEntry(quint16 index, quint8 subIndex, quint32 entry);
    void checkMappedAccess(const Place &mapping, quint32 entry, const QString &access);
    void disableUnusedPdo(quint16 index, bool &corrected);
    void checkCommunicationObjects();
    void checkEventTimers();
    void checkSrdoObjects();
    void checkSrdoEntry(quint16 index, quint8 subIndex, quint32 entry);
    void checkMappingSettings(const MappingUse &use);

    // --- a J1939 line (modelchecker_j1939.cpp) ---

    void checkJ1939Settings();
    void checkIdentityOfLine();
    void warnOfShortIdentity(const char *setting) const;
    void checkSpecialGroups(const QList<quint32> &specialPgns);
    void checkGroups();
    /// Length of the group in bits, as far as its signals were looked at.
    quint32 checkGroup(quint32 pgn, quint8 direction, bool supportsSafety);
    void checkTransport(quint32 lastGroupBits);
    void checkSignalVariables();

    // --- the installed stack (modelchecker_features.cpp) ---

    void readFeatures(const QStringList &files);
    void compareFeatures();

    quint8 line = 0;
    QPointer<ObjectDataBase> project;
    ProjectFeatures features; ///< read at the start of each check
    qint32 errorCount = 0;    ///< of the line under check
    bool limitCheckEnabled = false;
    bool autoCorrectionDisabled = false;
    quint8 granularity = 8; ///< of the PDO mapping, in bits; 0 if mappings are fixed
    FeatureSet stackFeatures;
    QVector<COB_VALUES_T> predefinedConnections;
    QString stackPath; ///< folder of the installed protocol stack; empty: unknown
    QVector<Finding> found;
};
