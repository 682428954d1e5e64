// Import of device descriptions (EDS and DCF, XDD and XDC).
#pragma once

#include "import/basedataimporter.h"
#include "import/descriptionrepair.h"
#include "import/descriptionsource.h"
#include "store/objectdatabase.h"

#include <memory>

/// Fills a line from a device description, on the worker thread. The source gives the objects, the
/// repair makes them such that the check lets them pass; here they become records that the rest of
/// the tool can work with: strings get storage, compact objects their members, and PDOs that the
/// file promises but does not hold are made.
class EDSImporter : public BaseDataImporter
{
    Q_OBJECT

public:
    EDSImporter() = default;

public slots:
    void doImport() override;

private:
    using SubData = ObjectDataBase::SUBINDEX_DATA_T;
    enum class PdoDirection { Receive, Transmit };

    /// Numbers of PDOs that the file says its device has.
    struct PromisedPdos {
        quint32 receive = 0;
        quint32 transmit = 0;
    };

    void beginObject(const CANopen::CANopenIndex &record);
    void addSub(const CANopenSubindex &record);
    /// Repairs the object that was read last, and writes it.
    void endObject();
    void writeObject(DescribedObject &object);
    /// Subindices are collected and written in large groups.
    void collect(const CANopenSubindex &record, const CANopen::CANopenIndex &object);
    void addMandatoryObjects();
    void tellThatNothingWasTaken();

    void addCompactMembers(const CANopen::CANopenIndex &record);
    /// The object's name and the number. A small file may describe very many members by an object
    /// with a very long name: when their names together take much memory, the object's name is cut
    /// in those to come.
    QString memberName(const QString &objectName, int number);
    SubData makeSubIndex(const CANopenSubindex &record, const CANopen::CANopenIndex &object);
    static void applyLimits(const CANopenSubindex &record, SubData &data);
    /// Strings and domains need a place and a size of their own.
    void applyStorage(const CANopenSubindex &record, SubData &data);
    void flush();

    // --- What stands outside of the objects (edsimporter_device.cpp) ---

    PromisedPdos importFileDeviceInfo();
    void importGranularity();
    void importComments();
    /// Makes objects on the lowest free numbers until there are \a promised of them.
    void createMissingPdos(PdoDirection direction, quint32 promised);
    void notePromise(PdoDirection direction, ObjectRange range, int missing);
    void createDefaultRpdo(quint8 line, quint16 index);
    void createDefaultTpdo(quint8 line, quint16 index);
    void createDefaultMapping(quint8 line, quint16 index);
    void addDefaultParameter(quint8 line, quint16 index, const QString &name, quint8 lastSub);
    void addDefaultSub(quint8 line, quint16 index, quint8 sub, SubData data);

    QList<ObjectDataBase::SubEntry> collected; ///< not yet in the store
    qint64 collectedCharacters = 0;            ///< of their texts
    qint64 madeNames = 0;                      ///< characters of long names of members
    bool areNamesCut = false;
    bool hasTakenObject = false;
    bool followsLetter = false; ///< the project's descriptions are portable; see Commissioning
    std::unique_ptr<DescriptionSource> source;
    std::unique_ptr<DescriptionRepair> repair;
    FileProblems changes;                   ///< notes of what was repaired
    std::optional<DescribedObject> current; ///< whose subindices are being read
};
