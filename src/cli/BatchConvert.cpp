#include "cli/BatchConvert.h"

#include "cli/Commands.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <memory>
#include <unistd.h>

namespace corrieval::cli {

namespace {

// Far beyond what any real tune takes, even drawn at 1200 dpi; a child past it is stuck.
// $CORRIEVAL_CONVERT_TIME_LIMIT (seconds) sets another, so that the stop can be tried quickly.
std::chrono::seconds TimeLimit()
{
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue("CORRIEVAL_CONVERT_TIME_LIMIT", &isNumber);
    return std::chrono::seconds(isNumber && seconds > 0 ? seconds : 120);
}

QString Counted(int count, const char* noun)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(noun)).arg(count == 1 ? "" : "s");
}

// "[3/40] converting Tune.bww" on standard error, rewritten in place; only on a terminal, where
// it is wiped before anything else is written.
class ProgressLine {
public:
    explicit ProgressLine(QTextStream& err) : m_err(err), m_terminal(isatty(STDERR_FILENO) != 0) {}

    void Show(int done, int total, const QString& file)
    {
        const QString line =
            QStringLiteral("[%1/%2] converting %3").arg(done).arg(total).arg(QFileInfo(file).fileName());
        if (!m_terminal || line == m_line)
            return;
        Clear();
        m_err << '\r' << line << Qt::flush;
        m_line = line;
    }

    void Clear()
    {
        if (!m_line.isEmpty())
            m_err << '\r' << QString(m_line.size(), QLatin1Char(' ')) << '\r' << Qt::flush;
        m_line.clear();
    }

private:
    QTextStream& m_err;
    bool m_terminal;
    QString m_line; // as it stands on the terminal
};

struct Child {
    explicit Child(const BatchJob& job) : Job(job) {}

    const BatchJob& Job;
    QProcess Process;
    QTimer Limit;
    bool TimedOut = false;
    bool Ended = false;
};

class BatchRunner {
public:
    BatchRunner(const std::vector<BatchJob>& jobs, const QStringList& options, QTextStream& out,
                QTextStream& err)
        : m_jobs(jobs), m_options(options), m_out(out), m_err(err), m_progress(err)
    {
    }

    int Run()
    {
        const std::size_t lanes = static_cast<std::size_t>(std::max(1, QThread::idealThreadCount()));
        while (m_children.size() < std::min(lanes, m_jobs.size()))
            StartNext();
        if (m_done < Total())
            m_loop.exec();
        m_progress.Clear();
        m_err << Counted(Total(), "file") << ": " << m_converted << " converted, " << Total() - m_converted
              << " refused, " << Counted(m_messages, "message");
        // With --report, the words of the tunes that could not be placed.
        if (m_passedOver > 0)
            m_err << ", " << Counted(m_passedOver, "word") << " passed over";
        m_err << Qt::endl;
        return m_converted == Total() ? Success : FileFailed;
    }

private:
    int Total() const { return static_cast<int>(m_jobs.size()); }

    void StartNext()
    {
        const BatchJob& job = m_jobs[m_children.size()];
        Child& child = *m_children.emplace_back(std::make_unique<Child>(job));
        QObject::connect(&child.Process, &QProcess::finished,
                         [this, &child](int status, QProcess::ExitStatus exit) {
                             if (child.TimedOut)
                                 End(child, true, QStringLiteral("took too long and was stopped"));
                             else if (exit == QProcess::CrashExit)
                                 End(child, true, QStringLiteral("the conversion crashed"));
                             else
                                 End(child, status != Success, QString());
                         });
        QObject::connect(&child.Process, &QProcess::errorOccurred,
                         [this, &child](QProcess::ProcessError error) {
                             // A child that never ran sends no finished signal.
                             if (error == QProcess::FailedToStart)
                                 End(child, true,
                                     QStringLiteral("the conversion could not be started: %1")
                                         .arg(child.Process.errorString()));
                         });
        child.Limit.setSingleShot(true);
        QObject::connect(&child.Limit, &QTimer::timeout, [&child] {
            child.TimedOut = true;
            child.Process.kill();
        });
        // A child never waits on the terminal for input.
        child.Process.setStandardInputFile(QProcess::nullDevice());
        child.Process.start(QCoreApplication::applicationFilePath(),
                            QStringList{QStringLiteral("convert")} + m_options +
                                QStringList{QStringLiteral("--"), job.In, job.Out});
        child.Limit.start(m_timeLimit);
        ShowProgress();
    }

    // Passes on what the child wrote, with a closing line of our own if it did not end by itself.
    void End(Child& child, bool refused, const QString& problem)
    {
        if (child.Ended)
            return;
        child.Ended = true;
        child.Limit.stop();
        ++m_done;
        m_converted += refused ? 0 : 1;

        m_progress.Clear();
        const QString output = QString::fromUtf8(child.Process.readAllStandardOutput());
        m_passedOver += static_cast<int>(output.count(QLatin1String(": passed over ")));
        m_out << output << Qt::flush;
        QString errors = QString::fromUtf8(child.Process.readAllStandardError());
        if (!errors.isEmpty() && !errors.endsWith(QLatin1Char('\n')))
            errors += QLatin1Char('\n');
        // Only the lines naming the file are its messages; Qt's own warnings pass through uncounted.
        const QString prefix = child.Job.In + QStringLiteral(": ");
        if (!problem.isEmpty())
            errors += prefix + problem + QLatin1Char('\n');
        for (const QStringView line : QStringView(errors).split(QLatin1Char('\n')))
            m_messages += line.startsWith(prefix) ? 1 : 0;
        m_err << errors << Qt::flush;

        if (m_children.size() < m_jobs.size())
            StartNext();
        else if (m_done == Total())
            m_loop.quit();
        ShowProgress();
    }

    // Names the longest-running conversion still going.
    void ShowProgress()
    {
        const auto running = std::find_if(m_children.begin(), m_children.end(),
                                          [](const std::unique_ptr<Child>& child) { return !child->Ended; });
        if (running != m_children.end())
            m_progress.Show(m_done, Total(), (*running)->Job.In);
    }

    const std::vector<BatchJob>& m_jobs;
    const QStringList& m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    ProgressLine m_progress;
    const std::chrono::seconds m_timeLimit = TimeLimit();
    QEventLoop m_loop;
    // Started in the order of the jobs; kept to the end, as a child is not deleted in its own signal.
    std::vector<std::unique_ptr<Child>> m_children;
    int m_done = 0;
    int m_converted = 0;
    int m_passedOver = 0;
    int m_messages = 0;
};

} // namespace

int RunBatch(const std::vector<BatchJob>& jobs, const QStringList& options, QTextStream& out,
             QTextStream& err)
{
    return BatchRunner(jobs, options, out, err).Run();
}

} // namespace corrieval::cli
