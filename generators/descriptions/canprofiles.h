// The two profiles of a device on classical CAN (CiA 311): parameters, which tell what the values
// of the device are, and objects, which refer to them.
#pragma once

#include "generators/descriptions/edssections.h"
#include "generators/descriptions/xddwriter.h"

namespace EdsSections
{
struct Member;
struct Object;
} // namespace EdsSections

/// Writes the profiles, the device profile first, each object by object. The objects are those of
/// the line that the file describes.
class CanProfiles
{
public:
    CanProfiles(XddWriter &writer, const EdsSections::Context &lineContext)
        : out(writer), context(lineContext)
    {
    }

    /// With the types of all \a objects; the list of parameters stays open.
    void startDevice(const QList<quint16> &objects);
    void writeParameters(quint16 index);
    void endDevice();

    /// The list of objects stays open.
    void startCommunication();
    void writeObject(quint16 index);
    void endCommunication(const QList<quint16> &objects);

private:
    void writeTypes(const QList<quint16> &objects);
    void writeType(const EdsSections::Object &object);
    void startParameter(const QString &id, const QString &name, const QString &description,
                        const char *access);
    void writeValueParameter(const EdsSections::Object &object, const EdsSections::Member &member);
    void writeValueAttributes(const EdsSections::Object &object, const EdsSections::Member &member);
    void writeDummyUsage();
    void writeTransportLayers();
    void writeNetworkManagement(const QList<quint16> &objects);

    XddWriter &out;
    const EdsSections::Context &context;
    bool hasParameters = false; ///< an empty list of them is none
};
