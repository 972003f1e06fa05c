#pragma once

#include "formats/archive/ArchiveError.h"
#include "formats/score/ScoreFile.h"

#include <QStringList>
#include <QTextStream>

namespace corrieval::cli {

// Exit statuses of the tool.
enum ExitStatus { Success = 0, FileFailed = 1, BadCommandLine = 2 };

// Each command takes its own arguments (after the command word); each answers --help and -h with
// its own usage and options.
int RunInfo(const QStringList& args, QTextStream& out, QTextStream& err);
int RunConvert(const QStringList& args, QTextStream& out, QTextStream& err);
// Lists the note and movement galleries as the app offers them, gracenotes by pitch name.
int RunMovements(const QStringList& args, QTextStream& out, QTextStream& err);
// Prints the play lists of a score, one tab-separated line a note: part, index, start, length,
// sample index, note name, duration code, weight.
int RunSequence(const QStringList& args, QTextStream& out, QTextStream& err);
// Plays a score through the sound device, showing the time and the bar, until it ends or Ctrl-C.
int RunPlay(const QStringList& args, QTextStream& out, QTextStream& err);
// Generates the instrument samples from a General MIDI SoundFont into a folder, keeping any
// file that is there.
int RunMakeSamples(const QStringList& args, QTextStream& out, QTextStream& err);
// Whether these arguments of convert ask for pages drawn, which needs a GUI application.
bool ConvertDrawsPages(const QStringList& args);

// Prints "corrieval-cli: FILE: PROBLEM" and gives the status to exit with.
int ReportFileProblem(QTextStream& err, const QString& file, const QString& problem);
// Prints "corrieval-cli: PROBLEM" and where the right usage is told, "Try 'corrieval-cli COMMAND
// --help'." (without COMMAND when it is empty), and gives the status to exit with.
int ReportUsage(QTextStream& err, const QString& command, const QString& problem);

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
