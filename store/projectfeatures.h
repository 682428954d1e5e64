// What a project asks for by its settings, as far as several parts of a run ask it.
#pragma once

#include <QString>

class ObjectDataBase;

/// Each setting is read here and nowhere else, so that one rule says in which base. What is missing
/// or no number is 0. The numbers are told apart by the claims below them: a value that is neither
/// 0 nor 1 means yes to one and no to another.
struct ProjectFeatures {
    qint64 canFd = 0;
    qint64 udsServer = 0; ///< ISO 14229-1
    qint64 udsClient = 0;
    qint64 isoTp = 0; ///< ISO 15765-2
    qint64 lss = 0;   ///< CiA 305
    qint64 idNegotiation = 0;
    qint64 usdoServer = 0; ///< CiA 1301
    qint64 usdoClient = 0;
    qint64 limitCheck = 0;     ///< of values that are written
    qint64 sortedCobs = 0;     ///< identifiers stand in order, to be found fast
    qint64 bitwiseMapping = 0; ///< parts of bytes in PDOs
    qint64 bitwiseMappingByPrefix = 0;
    qint64 groupFilter = 0; ///< of the driver
    qint64 groupFilterByPrefix = 0;
    qint64 staticValues = 0; ///< variables start with a value, not with 0
    qint64 stringDefaults = 0;
    qint64 generatedVariables = 0; ///< of the application, on CANopen lines
    qint64 newInitStructure = 0;
    qint64 sdoServers = 0; ///< of a J1939 device, by CAM11 and CAM21 (CiA 510), as those below
    qint64 sdoClients = 0;
    qint64 bam = 0; ///< transport of SAE J1939-21, as the one below
    qint64 cmdt = 0;
    qint64 safetyGroups = 0;  ///< SAE J1939-76
    qint64 dynamicGroups = 0; ///< mappings of groups may be changed at run time
    qint64 adapter = 0;       ///< between the J1939 device and its application
    QString coreHeaders;
    QString multiLine; ///< never read as C, as the one below
    QString descriptionForm;

    bool hasCanFd() const { return canFd > 0; }
    /// Deliberate: the check and the count of message objects of J1939 know no number but 1; held
    /// by tst_modelchecker and tst_definecounts.
    bool hasCanFdAsOne() const { return canFd == 1; }

    bool hasUdsServer() const { return udsServer == 1; }
    bool hasUdsClient() const { return udsClient == 1; }
    bool hasUds() const { return hasUdsServer() || hasUdsClient(); }
    /// Deliberate: any number but 0 counts for the check and for the version of the structures;
    /// held by tst_modelchecker and tst_golden "device".
    bool namesUdsServer() const { return udsServer != 0; }
    bool namesUdsClient() const { return udsClient != 0; }
    bool namesUds() const { return namesUdsServer() || namesUdsClient(); }

    bool hasIsoTp() const { return isoTp == 1; }
    bool hasLss() const { return lss > 0; }
    bool hasIdNegotiation() const { return idNegotiation > 0; }
    bool hasUsdoServer() const { return usdoServer != 0; }
    bool hasUsdoClient() const { return usdoClient != 0; }
    bool hasLimitCheck() const { return limitCheck > 0; }
    /// Deliberate: as hasCanFdAsOne(), for the check alone; held by tst_modelchecker.
    bool hasLimitCheckAsOne() const { return limitCheck == 1; }
    bool hasSortedCobs() const { return sortedCobs > 0; }
    // Deliberate: two settings are read in both bases, so that "0x1" means yes to one and no to
    // another, and the check takes the first as a byte; held by tst_modelchecker and
    // tst_definesections.
    bool hasBitwiseMapping() const { return bitwiseMapping == 1; }
    bool hasBitwiseMappingAsByte() const { return static_cast<quint8>(bitwiseMapping) != 0; }
    bool hasBitwiseTables() const { return bitwiseMappingByPrefix != 0; }
    bool hasGroupFilter() const { return groupFilter == 1; }
    bool namesGroupFilter() const { return groupFilterByPrefix == 1; }
    bool hasStaticValues() const { return staticValues == 1; }
    bool hasStringDefaults() const { return stringDefaults > 0; }
    /// Lines of other protocols have such variables without being asked.
    bool hasGeneratedVariables() const { return generatedVariables == 1; }
    /// The structures of start-up code of today; older stacks start without what all protocols
    /// share.
    bool hasNewInitStructure() const { return newInitStructure == 1; }

    bool hasSdoServer() const { return sdoServers == 1; }
    bool hasSdoClient() const { return sdoClients == 1; }
    bool hasBam() const { return bam > 0; }
    bool hasCmdt() const { return cmdt > 0; }
    bool hasSafetyGroups() const { return safetyGroups > 0; }
    bool hasDynamicGroups() const { return dynamicGroups > 0; }
    bool hasAdapter() const { return adapter == 1; }

    /// Is the project made for the V4 generation of the stack?
    bool isForV4() const { return coreHeaders == QLatin1String("V4"); }
    /// Deliberate: another word of the same setting, for the names of headers alone; held by
    /// tst_golden and tst_multiprogenerator.
    bool namesCoreHeaders() const { return coreHeaders == QLatin1String("1"); }
    /// The multi-line form also for one line.
    bool forcesMultiLine() const { return multiLine == QLatin1String("true"); }
    /// Device descriptions to the letter of their standards, which strict readers take.
    bool hasPortableDescriptions() const { return descriptionForm == QLatin1String("portable"); }
};

/// Makes of a setting's text what is read of it.
using ReadAs = QString (*)(const QString &text);

/// The general and J1939 settings go through \a readAs, if there is one. Reads the cache of
/// settings; no statement runs.
ProjectFeatures readProjectFeatures(const ObjectDataBase &store, ReadAs readAs = nullptr);
