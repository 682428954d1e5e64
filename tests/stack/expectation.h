// What the test program of generated C must print, read from the project alone.
#pragma once

#include "store/objectdatabase.h"

/// Reads a project for what its generated C must mean. Knows object dictionaries and the order of a
/// start, and nothing of how the tool writes either.
class Expectation
{
public:
    explicit Expectation(ObjectDataBase &database);

    QStringList dictionary() const; ///< rows "object" and "sub"
    /// Rows "call" of a start, and those of mapping tables below it. \a variant is 1 for a start in
    /// CAN FD mode, and as master where the project leaves the choice.
    QStringList start(int variant) const;
    QStringList virtualObjects() const; ///< rows "virtual"
    QStringList counts() const;         ///< rows of the start structure
    QStringList indications() const;
    QStringList cobIds() const;         ///< calls that set COB-IDs of the predefined connection set
    QStringList safety() const;         ///< rows "srdo"
    QStringList stringDefaults() const; ///< rows "string": variables that hold their defaults

    /// Rows of the structures that all protocols share, and of the diagnostic services.
    QStringList commonCounts() const;
    /// Rows of the CANopen services of a line, after its dictionary.
    QStringList services(quint8 line, bool isFd, bool asMaster) const;
    /// Row of the function that loads parameters, if there is one.
    void loadParameters(QStringList &calls) const;
    /// Rows of the start of a line's diagnostic services.
    QStringList uds(quint8 line) const;
    QString call(const char *name, quint8 line, const QVector<quint32> &arguments = {}) const;
    static constexpr quint8 kNoLine = 0xFF; ///< for call()

    bool isMultiLine() const { return multiLine; }
    bool hasUds() const
    {
        return number("udsserver_supported") == 1 || number("udsclient_supported") == 1;
    }
    int typeOf(quint8 line) const;
    quint32 protocolsOf(quint8 line) const; ///< bits, as the stack counts them
    bool hasType(quint16 dataType) const;
    bool choosesMaster() const; ///< at start-up
    bool isRouted() const;      ///< received PDOs are sent on
    int number(const char *setting) const;
    bool isSet(const char *setting) const { return number(setting) > 0; }

    /// Arguments of the compiler: what the test stack must know beside the definitions header.
    QStringList stackFeatures() const;

    /// Expressions of application variables with the type of each, as the project names them.
    QMap<QString, quint16> appVariables() const;

private:
    struct Place {
        quint8 line = 0;
        quint16 index = 0;
        quint8 sub = 0;
    };

    int number(const char *setting, quint8 line) const;
    bool has(quint8 line, quint16 index) const { return store.existIndex(line, index); }
    quint32 value(quint8 line, quint16 index, quint8 sub) const;
    int entries(quint8 line, quint16 index) const; ///< subindices from 1
    SubIndexData subOf(const Place &place) const;

    QString listed(const char *setting, quint8 line) const;
    int bufferCount(const char *setting, quint8 line) const;
    QString subRow(const Place &place) const;
    QString valueText(const Place &place, const SubIndexData &sub, const QString &storage) const;
    QString definedValue(const SubIndexData &sub, const QString &name) const;
    int domainNumber(const Place &place) const;
    QString boundsText(const SubIndexData &sub) const;
    quint8 homeOf(const Place &place) const;

    void setCobIds(QStringList &calls, quint8 line, quint16 low, quint16 high, int subs) const;
    void startServices(QStringList &calls, quint8 line, bool isFd) const;
    void startSdo(QStringList &calls, quint8 line, bool isFd) const;
    void startErrorControl(QStringList &calls, quint8 line) const;
    void startPdos(QStringList &calls, quint8 line) const;
    void startMinorServices(QStringList &calls, quint8 line) const;
    void startNmt(QStringList &calls, quint8 line, bool asMaster) const;
    void tpdo(QStringList &calls, quint8 line, quint16 index) const;
    void rpdo(QStringList &calls, quint8 line, quint16 index) const;
    bool isStatic(quint8 line, quint16 index) const;
    quint32 mappedCount(quint8 line, quint16 index) const;
    QStringList udsRows(quint8 line, const char *kind) const;
    /// In the single-line form the line has no number.
    quint8 shown(quint8 line) const { return multiLine ? line : 0; }
    QString target(quint8 line, quint32 mapping) const;
    QString receiver(quint8 line, quint32 mapping) const;
    QString routing(quint32 mapping) const;
    bool routesAtRunTime() const;

    ObjectDataBase &store;
    QList<quint8> lines;  ///< all that exist
    QList<quint8> served; ///< with at least two objects
    bool multiLine = false;
};
