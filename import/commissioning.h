// What a configuration (DCF) holds beside objects, and values that only the letter of CiA 306
// tells.
#pragma once

#include <QString>

#include <functional>

class ObjectDataBase;

/// For projects whose descriptions are portable; all others take from a file what they always did.
namespace Commissioning
{

/// Takes node-ID, name and bit rate of the device into \a line. \a entryOf gives what the section
/// DeviceComissioning has for a key, or an empty text. A node-ID of 255 says that there is none
/// yet. The description settings of the line must have been selected.
void take(ObjectDataBase &store, quint8 line,
          const std::function<QString(const char *key)> &entryOf);

/// An octet string or a domain: \a value in hexadecimal digits, with or without blanks, as the
/// project marks them; any other text as it is.
QString octets(const QString &value);

/// Bytes of a string of the project.
int sizeOf(const QString &value);

} // namespace Commissioning
