// Which signals of two frames belong together.
#include "store/comparison/signalpairs.h"

#include <QHash>

#include <algorithm>

namespace
{

using SignalPairs::Pair;

/// One round: those that are left and have the same key in place \a key.
void matchBy(int key, const QVector<QStringList> &older, const QVector<QStringList> &newer,
             QVector<bool> *isTaken, QVector<Pair> *pairs)
{
    QHash<QString, QVector<int>> left; // the last one first
    for (int i = older.size() - 1; i >= 0; --i) {
        const QString &text = older.at(i).at(key);
        if (!isTaken->at(i) && !text.isEmpty())
            left[text] << i;
    }
    for (int i = 0; i < newer.size(); ++i) {
        const auto found = left.find(newer.at(i).at(key));
        if ((*pairs)[i].older >= 0 || found == left.end() || found->isEmpty())
            continue;
        (*pairs)[i].older = found->takeLast();
        (*isTaken)[(*pairs)[i].older] = true;
    }
}

/// Moved are those beside the longest row of pairs whose places ascend in both frames.
void markMoved(QVector<Pair> *pairs)
{
    QVector<int> ends; // the pair that a row of each length ends with, at the least place
    QVector<int> former(pairs->size(), -1);
    for (int i = 0; i < pairs->size(); ++i) {
        const int place = pairs->at(i).older;
        if (place < 0)
            continue;
        const auto end =
            std::lower_bound(ends.begin(), ends.end(), place, [pairs](int pair, int wanted) {
                return pairs->at(pair).older < wanted;
            });
        const int length = int(end - ends.begin());
        former[i] = length > 0 ? ends.at(length - 1) : -1;
        if (length == ends.size())
            ends << i;
        else
            ends[length] = i;
        (*pairs)[i].isMoved = true;
    }
    for (int i = ends.isEmpty() ? -1 : ends.last(); i >= 0; i = former.at(i))
        (*pairs)[i].isMoved = false;
}

} // namespace

QVector<Pair> SignalPairs::match(const QVector<QStringList> &older,
                                 const QVector<QStringList> &newer)
{
    QVector<Pair> pairs(newer.size());
    QVector<bool> isTaken(older.size(), false);
    const int keys = newer.isEmpty() ? 0 : newer.first().size();
    for (int key = 0; key < keys; ++key)
        matchBy(key, older, newer, &isTaken, &pairs);
    markMoved(&pairs);
    return pairs;
}
