// Synthetic J1939 groups as a DBC file.
#include "bench/frameparts.h"

#include <QFile>
#include <QTextStream>

namespace
{

constexpr int kSignals = 8;
constexpr quint32 kExtended = 0x80000000; // marks an identifier of 29 bits
constexpr quint32 kPriority = 6;
constexpr quint32 kGroupsOfPage = 0x1000; // 0xF000 to 0xFFFF, which name no destination
constexpr quint32 kFirstSignal = 100000;

quint32 identifierOf(int part)
{
    const quint32 number = quint32(part);
    // The other page has groups that the stack handles itself, at its end.
    const quint32 page = number < kGroupsOfPage ? 1 : 0;
    const quint32 group = page << 16 | 0xF000 | number % kGroupsOfPage;
    return kExtended | kPriority << 26 | group << 8 | 0x80;
}

void writeMessage(QTextStream &out, int part)
{
    out << "\nBO_ " << identifierOf(part) << " Frame_" << part << ": 8 "
        << (part % 2 == 0 ? "Unit" : "Other") << "\n";
    for (int place = 0; place < kSignals; ++place)
        out << " SG_ Signal_" << part << "_" << place << " : " << place * 8
            << "|8@1+ (0.5,-10) [-10|110] \"km/h\" Vector__XXX\n";
}

void writeProperties(QTextStream &out, int part)
{
    const quint32 identifier = identifierOf(part);
    out << "CM_ BO_ " << identifier << " \"What part " << part << " tells.\";\n"
        << "BA_ \"GenMsgCycleTime\" BO_ " << identifier << " 100;\n";
    for (int place = 0; place < kSignals; ++place) {
        const QString signal =
            QStringLiteral("%1 Signal_%2_%3")
                .arg(QString::number(identifier), QString::number(part), QString::number(place));
        const int number = part * kSignals + place;
        out << "BA_ \"SPN\" SG_ " << signal << " " << kFirstSignal + quint32(number) << ";\n";
        if (number % 3 == 0)
            out << "CM_ SG_ " << signal << " \"Sampled each " << number % 50 << " ms.\";\n";
        if (number % 10 == 0)
            out << "VAL_ " << signal << " 0 \"off\" 1 \"on\" ;\n";
    }
}

} // namespace

bool Bench::writeDbc(int count, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out << "VERSION \"\"\n\nNS_ :\n\nBS_:\n\nBU_: Unit Other\n";
    for (int part = 0; part < count; ++part)
        writeMessage(out, part);
    out << "\nBA_DEF_ \"ProtocolType\" STRING ;\n"
        << "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 3600000;\n"
        << "BA_DEF_ SG_ \"SPN\" INT 0 524287;\n"
        << "BA_DEF_DEF_ \"ProtocolType\" \"\";\n"
        << "BA_DEF_DEF_ \"GenMsgCycleTime\" 0;\n"
        << "BA_DEF_DEF_ \"SPN\" 0;\n"
        << "BA_ \"ProtocolType\" \"J1939\";\n";
    for (int part = 0; part < count; ++part)
        writeProperties(out, part);
    out.flush();
    return out.status() == QTextStream::Ok;
}
