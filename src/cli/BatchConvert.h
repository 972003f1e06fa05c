#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>
#include <vector>

namespace corrieval::cli {

// One file of a batch: the input and the output it becomes.
struct BatchJob {
    QString In;
    QString Out;
};

// Converts each job in a child process of this program, `convert OPTIONS -- IN OUT`, as many at
// once as the machine has cores. The program keeps process-wide state (the active view, the
// message sink), so conversions cannot share a process; apart, a file that crashes or hangs its
// conversion takes down only its own child. A child that runs longer than two minutes
// ($CORRIEVAL_CONVERT_TIME_LIMIT seconds when set) is stopped. Each child's standard output and
// error are passed on whole when it ends, so the lines of different files never interleave; on a
// terminal a progress line is shown on standard error meanwhile. Ends with a summary line on
// standard error and returns Success when every file converted, FileFailed when any was refused.
int RunBatch(const std::vector<BatchJob>& jobs, const QStringList& options, QTextStream& out,
             QTextStream& err);

} // namespace corrieval::cli
