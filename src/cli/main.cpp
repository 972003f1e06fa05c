#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/QuietStart.h"
#include "platform/LocalePaper.h"

#include <QGuiApplication>

#include <array>
#include <memory>

using namespace corrieval::cli;

namespace {

struct Command {
    const char* Name;
    const char* Summary;
    int (*Run)(const QStringList& args, QTextStream& out, QTextStream& err);
};

// In the order the help lists them: the common tasks first.
constexpr std::array<Command, 6> kCommands{{
    {"convert", "convert tunes to scores, player files, PDF, SVG, PNG pages or WAV sound", RunConvert},
    {"play", "play a tune through the sound server, showing the time and the bar", RunPlay},
    {"info", "print the object tree of a tune", RunInfo},
    {"sequence", "print the notes a tune plays, one a line", RunSequence},
    {"movements", "list the note and movement galleries with their gracenotes", RunMovements},
    {"make-samples", "generate the instrument recordings from a SoundFont", RunMakeSamples},
}};

QString ToolHelp()
{
    QString help = QStringLiteral("usage: corrieval-cli COMMAND [OPTIONS] [FILES]\n"
                                  "       corrieval-cli --help | --version\n\n") +
                   Wrapped(QStringLiteral("Converts, draws, renders and plays Great Highland Bagpipe tunes "
                                          "without a window, for scripts and batches."),
                           0) +
                   QStringLiteral("\nCommands:\n");
    for (const Command& command : kCommands)
        help += QStringLiteral("  %1").arg(QLatin1String(command.Name)).leftJustified(16) +
                Wrapped(QLatin1String(command.Summary), 16).mid(16);
    return help + QLatin1Char('\n') + Wrapped(QLatin1String(TuneKinds), 0) +
           QStringLiteral("\n'corrieval-cli COMMAND --help' shows a command's usage and options;\n"
                          "'corrieval-cli help COMMAND' does the same.\n\n"
                          "Exit status: 0 done, 1 a file could not be read or written, 2 a wrong\n"
                          "command line.\n");
}

const Command* FindCommand(const QString& name)
{
    for (const Command& command : kCommands)
        if (name == QLatin1String(command.Name))
            return &command;
    return nullptr;
}

// The tool's own words before any command: help, version, or which command to run.
int RunTool(QStringList args, QTextStream& out, QTextStream& err)
{
    if (args.isEmpty())
        return ReportUsage(err, {}, QStringLiteral("no command given"));
    const QString word = args.takeFirst();
    if (word == QLatin1String("--help") || word == QLatin1String("-h") ||
        (word == QLatin1String("help") && args.isEmpty())) {
        out << ToolHelp() << Qt::flush;
        return Success;
    }
    if (word == QLatin1String("--version")) {
        out << "corrieval-cli (Corrieval) " << CORRIEVAL_VERSION << Qt::endl;
        return Success;
    }
    if (word == QLatin1String("help")) {
        if (const Command* command = FindCommand(args.front()); command != nullptr && args.size() == 1)
            return command->Run({QStringLiteral("--help")}, out, err);
        return ReportUsage(err, {}, QStringLiteral("help takes one command"));
    }
    if (const Command* command = FindCommand(word))
        return command->Run(args, out, err);
    return ReportUsage(err, {}, QStringLiteral("unknown command '%1'").arg(word));
}

} // namespace

int corrieval::cli::ReportFileProblem(QTextStream& err, const QString& file, const QString& problem)
{
    err << "corrieval-cli: " << file << ": " << problem << Qt::endl;
    return FileFailed;
}

int corrieval::cli::ReportUsage(QTextStream& err, const QString& command, const QString& problem)
{
    err << "corrieval-cli: " << problem << "\nTry 'corrieval-cli "
        << (command.isEmpty() ? QString() : command + QLatin1Char(' ')) << "--help'." << Qt::endl;
    return BadCommandLine;
}

int main(int argc, char** argv)
{
    KeepQtStartQuiet();
    // Drawing pages needs a GUI application for fonts and painting, though the tool never shows
    // a window; everything else stays on a core application, which starts quicker and quieter.
    QStringList rawArgs;
    for (int i = 1; i < argc; ++i)
        rawArgs << QString::fromLocal8Bit(argv[i]);
    std::unique_ptr<QCoreApplication> app;
    if (rawArgs.value(0) == QLatin1String("convert") && ConvertDrawsPages(rawArgs.mid(1))) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setApplicationVersion(QStringLiteral(CORRIEVAL_VERSION));
    // Imported tunes take the paper of the user's locale, never a printer's: the output is the same
    // on every machine of that locale.
    corrieval::platform::UseLocalePaper();
    QTextStream out(stdout);
    QTextStream err(stderr);
    return RunTool(QCoreApplication::arguments().mid(1), out, err);
}
