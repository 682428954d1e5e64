// The distance of two words, by optimal string alignment, and the nearest of several.
#include "support/editdistance.h"

#include <QVector>

#include <algorithm>

int editDistance(const QString &one, const QString &other)
{
    const QString a = one.toCaseFolded();
    const QString b = other.toCaseFolded();
    QVector<QVector<int>> least(a.size() + 1, QVector<int>(b.size() + 1)); // of the first i and k
    for (int i = 0; i <= a.size(); ++i) {
        for (int k = 0; k <= b.size(); ++k) {
            if (i == 0 || k == 0) {
                least[i][k] = i + k;
                continue;
            }
            const int replaced = least[i - 1][k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1);
            least[i][k] = std::min({least[i - 1][k] + 1, least[i][k - 1] + 1, replaced});
            if (i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1])
                least[i][k] = std::min(least[i][k], least[i - 2][k - 2] + 1);
        }
    }
    return least[a.size()][b.size()];
}

QString nearestWord(const QString &word, const QStringList &candidates)
{
    int least = qBound(1, word.size() / 4, 4) + 1; // what is as far away has another meaning
    QString best;
    for (const QString &candidate : candidates) {
        if (qAbs(candidate.size() - word.size()) >= least)
            continue;
        const int distance = editDistance(word, candidate);
        if (candidate != word && distance < least) {
            least = distance;
            best = candidate;
        }
    }
    return best;
}

QString didYouMean(const QString &word, const QStringList &candidates)
{
    const QString nearest = nearestWord(word, candidates);
    return nearest.isEmpty() ? QString() : QStringLiteral("; did you mean \"%1\"").arg(nearest);
}
