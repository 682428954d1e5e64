// Paths of output files.
#include "generators/outputname.h"

#include <QFile>

#include <algorithm>

namespace
{

constexpr int kLongestNameBytes = 255; ///< of all common file systems

int bytesOf(const QString &name)
{
    return QFile::encodeName(name).size();
}

/// Leaves \a size characters; half of a wide one is none.
void shorten(QString &text, int size)
{
    const bool isTorn = size > 0 && size < text.size() && text.at(size - 1).isHighSurrogate();
    text.truncate(isTorn ? size - 1 : size);
}

} // namespace

QString OutputName::withoutControls(const QString &text)
{
    QString kept = text;
    const auto isControl = [](QChar character) {
        return character.category() == QChar::Other_Control;
    };
    kept.truncate(int(std::remove_if(kept.begin(), kept.end(), isControl) - kept.begin()));
    return kept;
}

QStringList OutputName::headers(const QString &list)
{
    QString names = withoutControls(list);
    for (const char quote : {'"', '<', '>'})
        names.remove(QLatin1Char(quote));
    // Deliberate: names of headers that are empty are not names, held by tst_golden.
    return names.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString OutputName::path(const QString &folder, const QString &project, const QString &tail)
{
    return path(folder, project, QString(), QString(), tail);
}

QString OutputName::path(const QString &folder, const QString &project, const QString &middle,
                         const QString &variant, const QString &tail)
{
    QString start = withoutControls(project);
    QString part = withoutControls(variant);
    part.replace(QLatin1Char('/'), QLatin1Char('_')).replace(QLatin1Char('\\'), QLatin1Char('_'));
    shorten(part, kLongestNameBytes); // a character has a byte at least
    int excess = bytesOf(start + middle + part + tail) - kLongestNameBytes;
    while (excess > 0 && !(start.isEmpty() && part.isEmpty())) {
        QString &longer = start.size() > part.size() ? start : part;
        const int before = bytesOf(longer);
        shorten(longer, longer.size() - 1);
        excess -= before - bytesOf(longer);
    }
    return folder + QLatin1Char('/') + start + middle + part + tail;
}
