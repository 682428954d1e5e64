// Import of networks (DBC) into lines of J1939 or raw CAN.
#pragma once

#include "formats/dbcreader.h"
#include "import/basedataimporter.h"
#include "import/dbcframes.h"
#include "import/dbcidentity.h"

#include <QPair>
#include <QSet>

/// Fills a line from the messages of a DBC file. The protocol of the line says what they become:
/// parameter groups or CAN frames. A group or frame of the file takes the place of the one that
/// the line has of its number and direction; the others stay. The file is read once, on the thread
/// that asks first; the rest is done on the worker thread.
class DbcImporter : public BaseDataImporter
{
    Q_OBJECT

public:
    DbcImporter() = default;

    /// J1939 if the file says so, or if the line is one of J1939 and has use for the file, or if
    /// neither says anything and the file looks like it; else raw CAN. There is an error afterwards
    /// if the file cannot be imported.
    LineType lineTypeOfFile() override;
    /// By the name in the file, or its long name.
    void setOwnNode(const QString &name) override { ownNode = name; }

public slots:
    void doImport() override;

private:
    /// Reads it, unless that was done before.
    void provideFile();
    /// Tells of a line of raw CAN that might as well be one of J1939.
    void tellOfProtocol() const;
    void refuse(const QString &reason);
    void importMessages(LineType type);
    /// A line without a name gets that of the node.
    void setName(const QString &node);
    /// Tells \a frames what the project holds that the import leaves there.
    void avoidWhatStays(DbcFrames *frames, bool isJ1939) const;
    using FrameKeys = QSet<QPair<quint32, quint8>>; ///< number and direction
    void avoidGroups(DbcFrames *frames, quint8 line, quint8 direction,
                     const FrameKeys &replaced) const;
    void avoidCanFrames(DbcFrames *frames, quint8 line, quint8 direction,
                        const FrameKeys &replaced) const;
    void setIdentity(const QVector<DbcIdentity::Setting> &identity);
    /// Lines that share a value with this one keep it.
    void setForLine(const QString &key, const QString &value);
    /// Makes the line able to send and receive long groups.
    void provideTransport(const std::vector<GroupRecord> &groups);

    DbcReader reader;
    bool wasTried = false;
    bool choosesType = false; ///< of the line, which has none so far
    QString ownNode;
};
