// Parser of device descriptions (EDS and DCF, CiA 306).
#pragma once

#include "formats/edsreader.h"
#include "formats/edsrecords.h"

#include <QObject>

/// Turns the object sections of a file into records. It takes what files in the field hold:
/// sections in any order, repeated or without their object, and missing or odd entries. What it
/// passes over is logged with file and line. Its signals run on the caller's thread, during
/// LoadEds().
class EdsParser : public QObject
{
    Q_OBJECT

public:
    explicit EdsParser(QObject *parent = nullptr) : QObject(parent) {}

    /// Raises newIndex() for each object in the order of the file, after it newSubIndex() for each
    /// of its subindices in the order of the file. False if the file cannot be read or has no
    /// object.
    bool LoadEds(QString file);

    /// Could the file be read, whatever is in it?
    bool wasRead() const { return isRead; }

    /// All sections of the file that was loaded last.
    const EdsReader &sections() const { return reader; }

signals:
    void newIndex(const CANopen::CANopenIndex &record);
    void newSubIndex(const CANopenSubindex &record);

private:
    EdsReader reader;
    bool isRead = false;
};
