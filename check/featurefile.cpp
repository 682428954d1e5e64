// Feature files. They come with a stack, and may be anything.
#include "check/featurefile.h"

#include "support/logging.h"
#include "support/numbers.h"
#include "support/runfiles.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamReader>

namespace
{

constexpr qint64 kMostBytes = 4 * 1024 * 1024;
constexpr int kDeepest = 256;

const QString kNoVersion = QStringLiteral("0.0");

template <typename Number>
struct CountRow {
    const char *element;
    Number FeatureSet::*field;
};

constexpr CountRow<quint8> kByteCounts[] = {
    {"sdo_server", &FeatureSet::sdoServers},
    {"sdo_client", &FeatureSet::sdoClients},
    {"emcy_consumer", &FeatureSet::emergencyConsumers},
    {"heartbeat_consumer", &FeatureSet::heartbeatConsumers},
};

constexpr CountRow<quint16> kWordCounts[] = {
    {"pdo_producer", &FeatureSet::pdoProducers},
    {"pdo_consumer", &FeatureSet::pdoConsumers},
};

constexpr CountRow<bool> kFlags[] = {
    {"srdo_supported", &FeatureSet::srdo},
    {"mpdo_supported", &FeatureSet::mpdo},
    {"sync_producer", &FeatureSet::syncProducer},
    {"sync_consumer", &FeatureSet::syncConsumer},
    {"nmt_master", &FeatureSet::nmtMaster},
    {"nmt_slave", &FeatureSet::nmtSlave},
    {"bootup_manager", &FeatureSet::bootupManager},
    {"config_manager", &FeatureSet::configurationManager},
    {"led", &FeatureSet::led},
    {"lss_slave", &FeatureSet::lssSlave},
    {"lss_master", &FeatureSet::lssMaster},
};

/// A document is a tree that its library walks by recursion: one that is nested without end must
/// not become a document.
bool isFlatEnough(const QByteArray &text)
{
    QXmlStreamReader reader(text);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement && ++depth > kDeepest)
            return false;
        if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    return !reader.hasError();
}

/// An empty document if the file cannot be read or is no XML.
QDomDocument readDocument(const QString &path)
{
    QDomDocument document;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMostBytes) {
        qCWarning(lcCheck) << "cannot read" << path;
        return document;
    }
    RunFiles::noteRead(path);
    const QByteArray text = file.read(kMostBytes);
    if (!isFlatEnough(text) || !document.setContent(text)) {
        qCWarning(lcCheck) << "no sound XML in" << path;
        return QDomDocument();
    }
    return document;
}

QString firstText(const QDomDocument &document, const QString &element)
{
    const QDomNode node = document.elementsByTagName(element).item(0);
    return node.firstChild().toText().data();
}

QString versionOf(const QString &path, const QString &element)
{
    const QString version = firstText(readDocument(path), element);
    return version.trimmed().isEmpty() ? kNoVersion : version;
}

template <typename Number, size_t N>
void mergeFields(FeatureSet &set, const FeatureSet &other, const CountRow<Number> (&rows)[N])
{
    for (const CountRow<Number> &row : rows)
        set.*row.field = qMax(set.*row.field, other.*row.field);
}

} // namespace

void FeatureSet::merge(const FeatureSet &other)
{
    mergeFields(*this, other, kByteCounts);
    mergeFields(*this, other, kWordCounts);
    mergeFields(*this, other, kFlags);
    dynamicMapping |= other.dynamicMapping;
}

QStringList findFeatureFiles(const QString &stackPath)
{
    QStringList files =
        QDir(stackPath).entryList({QStringLiteral("*_featureinfo_*.xml")}, QDir::Files);
    for (QString &file : files)
        file.prepend(stackPath + QLatin1Char('/'));
    return files;
}

QString VersionReader::getReqiuredToolVersion() const
{
    return versionOf(file, QStringLiteral("required_tool_version"));
}

QString VersionReader::getCurrentVersion() const
{
    return versionOf(file, QStringLiteral("version"));
}

QString FeatureSetExtractor::getValue(const QString &key) const
{
    return firstText(document, key);
}

FeatureSet FeatureSetExtractor::getFeatures()
{
    document = readDocument(file);
    FeatureSet features;
    const auto number = [this](const char *element) {
        return Numbers::toUIntByPrefix(getValue(QLatin1String(element)));
    };
    for (const auto &row : kByteCounts)
        features.*row.field = static_cast<quint8>(number(row.element));
    for (const auto &row : kWordCounts)
        features.*row.field = static_cast<quint16>(number(row.element));
    for (const auto &row : kFlags)
        features.*row.field = number(row.element) != 0;
    features.dynamicMapping =
        getValue(QStringLiteral("pdo_mapping")).trimmed() == QLatin1String("dynamic");
    return features;
}
