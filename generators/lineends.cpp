// The line ends of generated sources.
#include "generators/lineends.h"

#include "support/helper.h"
#include "support/usersettings.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>

QString LineEnds::chosen()
{
    switch (UserSettings().value("General", "line_ending_index").toInt()) {
    case 1:
        return QStringLiteral("\r\n");
    case 2:
        return QStringLiteral("\n");
    case 3:
        return QStringLiteral("\r");
    default:
        return QString();
    }
}

QByteArray LineEnds::adjusted(const QString &path, const QByteArray &content)
{
    const QString name = QFileInfo(path).fileName();
    const bool follows = std::any_of(std::begin(kFiles), std::end(kFiles),
                                     [&](const char *file) { return name == QLatin1String(file); });
    const QString lineEnd = follows ? chosen() : QString();
    return lineEnd.isEmpty() ? content : Helper::withLineEnds(content, lineEnd);
}
