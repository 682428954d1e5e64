// Counting what a project holds.
#include "store/projectrecords.h"

namespace
{

template <class Frame>
qint64 countOfFrames(const std::vector<Frame> &frames)
{
    qint64 count = qint64(frames.size());
    for (const Frame &frame : frames)
        count += qint64(frame.signalsOf.size());
    return count;
}

} // namespace

qint64 countOfRecords(const ProjectRecord &project)
{
    qint64 count = 0;
    for (const auto &[number, line] : project.lines) {
        for (const auto &[index, object] : line.objects)
            count += qint64(object.subs.size());
        count += countOfFrames(line.groups) + countOfFrames(line.frames);
        count += qint64(line.otherSignals.size() + line.otherElements.size());
    }
    return count;
}
