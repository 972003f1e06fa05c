#pragma once

#include "formats/archive/ArchiveError.h"
#include "formats/score/ScoreFile.h"

#include <QStringList>
#include <QTextStream>

namespace corrieval::cli {

// Exit statuses of the tool.
enum ExitStatus { Success = 0, FileFailed = 1, BadCommandLine = 2 };

// Each command takes its own arguments (after the command word).
int RunInfo(const QStringList& args, QTextStream& out, QTextStream& err);
int RunConvert(const QStringList& args, QTextStream& out, QTextStream& err);
// Whether these arguments of convert ask for pages drawn, which needs a GUI application.
bool ConvertDrawsPages(const QStringList& args);

// Prints "corrieval-cli: FILE: PROBLEM" and gives the status to exit with.
int ReportFileProblem(QTextStream& err, const QString& file, const QString& problem);
int ReportUsage(QTextStream& err, const QString& problem);

// Runs a file operation, turning archive and file errors into the one-line report.
template <class Operation> int GuardFileErrors(QTextStream& err, Operation&& operation)
{
    try {
        return operation();
    } catch (const ArchiveError& e) {
        return ReportFileProblem(err, e.FileName(), e.Describe());
    } catch (const FileError& e) {
        return ReportFileProblem(err, e.FileName(), e.Reason());
    }
}

} // namespace corrieval::cli
