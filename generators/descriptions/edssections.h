// The sections of an electronic data sheet (CiA 306).
#pragma once

#include "generators/descriptions/edsform.h"
#include "store/objectdatabase.h"

#include <QStringList>

class EdsVariants;
class FileProblems;
class TextWriter;

/// Plain functions, one a section. What they write they read from the store; the line's description
/// settings must have been selected.
namespace EdsSections
{

struct Context {
    const ObjectDataBase &store;
    TextWriter &out;
    quint8 line;
    QString define;              ///< the variant that is described; empty: the plain file
    bool canFd;                  ///< the file describes a CAN FD device
    QString fileName;            ///< as the file says its own name
    const EdsVariants &variants; ///< of the line
    const EdsForm &form;
    FileProblems *problems = nullptr; ///< what the file cannot hold is noted there
    /// For a configuration (DCF), the name of the data sheet beside it; else empty.
    QString dataSheet = {};

    bool isConfiguration() const { return !dataSheet.isEmpty(); }
};

// --- What stands outside of the objects (edssections_device.cpp) ---

void writeFileInfo(const Context &context); ///< with the file's comments
/// \a objects are those that the file describes, ascending.
void writeDeviceInfo(const Context &context, const QList<quint16> &objects);
void writeDummyUsage(const Context &context);
void generateObjectLists(const Context &context, const QList<quint16> &objects);
void writeAdditionalSections(const Context &context);
/// The place of the device in its network, of a configuration.
void writeCommissioning(const Context &context);

constexpr quint32 kMostGranular = 64; ///< bits of a PDO

/// \a described are the objects of the file.
QString countOfObjects(const Context &context, ObjectRange range, const QList<quint16> &described);
bool usesGroupMessaging(const Context &context);
/// In kBit/s: the one that the line is said to run at, else the highest that the device supports.
QString baudrateOf(const Context &context);

// --- Objects (edssections_objects.cpp) ---

/// The objects that the file describes, ascending.
QList<quint16> describedObjects(const Context &context);

/// An object with its subindices. What the store does not hold is described by its defaults.
void generateIndexSection(const Context &context, quint16 index);

/// The values of a subindex in the classic form, without the head of its section.
void generateSubInfo(TextWriter &out, const ObjectDataBase::SUBINDEX_DATA_T &data);

/// Does the default value belong into a device description?
bool isDefaultDescribed(const ObjectDataBase::SUBINDEX_DATA_T &data);

// --- Texts ---

/// An index in four hexadecimal digits, lower case, as the classic form has it.
QString hex4(quint16 index);

} // namespace EdsSections
