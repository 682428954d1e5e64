// The files in which an installed protocol stack says what it offers.
#pragma once

#include <QDomDocument>
#include <QObject>
#include <QString>
#include <QStringList>

/// What a stack offers; the default offers nothing.
struct FeatureSet {
    quint8 sdoServers = 0;
    quint8 sdoClients = 0;
    quint16 pdoProducers = 0;
    quint16 pdoConsumers = 0;
    quint8 emergencyConsumers = 0;
    quint8 heartbeatConsumers = 0;
    bool srdo = false;
    bool mpdo = false;
    bool dynamicMapping = false;
    bool syncProducer = false;
    bool syncConsumer = false;
    bool nmtMaster = false;
    bool nmtSlave = false;
    bool bootupManager = false;
    bool configurationManager = false;
    bool led = false;
    bool lssSlave = false;
    bool lssMaster = false;

    /// Takes over what \a other offers beyond this.
    void merge(const FeatureSet &other);
};

/// Full paths of the feature files in \a stackPath, in the order of their names.
QStringList findFeatureFiles(const QString &stackPath);

/// Reads the two versions of a feature file; the file is read at each call.
class VersionReader : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void setFeatureFile(const QString &path) { file = path; }

    /// Version of this tool that the stack was made for; "0.0" if the file names none, or is no
    /// feature file.
    QString getReqiuredToolVersion() const;
    /// Version of the stack itself; likewise.
    QString getCurrentVersion() const;

private:
    QString file;
};

/// Reads the features of a feature file.
class FeatureSetExtractor : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void setFeatureFile(const QString &path) { file = path; }

    /// Opens and parses the file; a file that cannot be read offers nothing.
    FeatureSet getFeatures();

    /// Text of the first element of that name in the file that getFeatures() has read.
    QString getValue(const QString &key) const;

private:
    QDomDocument document;
    QString file;
};
