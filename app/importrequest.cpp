// What the command line asks to import.
#include "app/importrequest.h"

#include "app/runoptions.h"
#include "store/projectfile.h"
#include "support/printable.h"
#include "support/problems.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace
{

constexpr char kImport[] = "-import";
constexpr char kOwnNode[] = "-import-node";

/// The number of a line; none if the project can have no such line.
std::optional<quint8> lineOf(const QString &digits)
{
    bool isNumber = false;
    const uint number = digits.toUInt(&isNumber);
    if (!isNumber || number > uint(kHighestImportLine))
        return std::nullopt;
    return static_cast<quint8>(number);
}

QString whyNoLine(const QString &text)
{
    return QStringLiteral("%1 is no line of a project, which are 0 to %2")
        .arg(quotedWord(text), QString::number(kHighestImportLine));
}

/// Takes "<line>:" from the beginning of the file's name.
void splitTarget(ImportRequest *request)
{
    static const QRegularExpression target(QStringLiteral("^([0-9]+):"));
    const QRegularExpressionMatch found = target.match(request->file);
    if (!found.hasMatch())
        return;
    request->file.remove(0, found.capturedLength());
    request->line = lineOf(found.captured(1));
    if (!request->line)
        request->fault = whyNoLine(found.captured(1));
    else if (request->file.isEmpty())
        request->fault = QStringLiteral("no file is named after the colon");
    else if (!QFileInfo::exists(request->file) && QFileInfo::exists(request->given))
        request->fault = QStringLiteral("there is no such file");
    if (!request->fault.isEmpty() && QFileInfo::exists(request->given))
        request->fault +=
            QStringLiteral("; the file %1 is written as %2")
                .arg(quotedWord(request->given), quotedWord(QLatin1String("./") + request->given));
}

/// Takes "#<line>" from the end of a project's name.
void splitSource(ImportRequest *request)
{
    const int mark = request->file.lastIndexOf(QLatin1Char('#'));
    const QString project = request->file.left(mark);
    if (mark < 0 || QFileInfo::exists(request->file) ||
        ProjectFile::formOf(project) == ProjectFile::Form::Other)
        return;
    const QString number = request->file.mid(mark + 1);
    request->file = project;
    request->lineOfFile = lineOf(number);
    if (!request->lineOfFile && request->fault.isEmpty())
        request->fault = whyNoLine(number);
}

bool takesOwnNode(const ImportRequest &request)
{
    return request.file.endsWith(QLatin1String(".dbc"), Qt::CaseInsensitive);
}

void tellUnusedNode(const QString &node)
{
    Problems::warning("import-node-unused", {},
                      QStringLiteral("the node %1 of %2 has no effect, since no DBC file is "
                                     "imported after it; put it before the %3 of that file")
                          .arg(quotedWord(node), quotedWord(QLatin1String(kOwnNode)),
                               quotedWord(QLatin1String(kImport))));
}

} // namespace

ImportRequest ImportRequest::ofWord(const QString &word)
{
    ImportRequest request;
    request.file = word;
    request.given = word;
    splitTarget(&request);
    splitSource(&request);
    return request;
}

QVector<ImportRequest> readImports(const RunOptions &options)
{
    QVector<ImportRequest> requests;
    QString node;
    bool isNodeUsed = true;
    const auto given = options.valuesInOrder({kImport, kOwnNode});
    for (const auto &[option, value] : given) {
        if (option == QLatin1String(kOwnNode)) {
            if (!isNodeUsed)
                tellUnusedNode(node);
            node = value;
            isNodeUsed = false;
            continue;
        }
        requests << ImportRequest::ofWord(value);
        requests.last().ownNode = node;
        isNodeUsed = isNodeUsed || takesOwnNode(requests.last());
    }
    if (!isNodeUsed)
        tellUnusedNode(node);
    return requests;
}
