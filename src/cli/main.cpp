#include "cli/Commands.h"

#include <QGuiApplication>

#include <memory>

using namespace corrieval::cli;

namespace {
const char* const kUsage = "usage: corrieval-cli info FILE\n"
                           "       corrieval-cli convert IN OUT [--print] [--dpi N] [--report] [--strict]\n"
                           "       corrieval-cli convert --to FMT --out DIR IN... [OPTIONS]\n"
                           "       corrieval-cli movements\n"
                           "       corrieval-cli sequence SCORE\n"
                           "       corrieval-cli play SCORE [--loop] [--no-sound] [PLAY OPTIONS]\n"
                           "       corrieval-cli make-samples DIR [SAMPLE OPTIONS]\n"
                           "  IN is a score (.skb), a template (.skt), a Glenmarch tune (.glm) or a\n"
                           "  Bagpiper Music Writer tune (.bww, .bmw); OUT is a score (.skb), a player\n"
                           "  file (.skp), or the pages drawn as .pdf, .svg or .png (NAME-1.png, ...\n"
                           "  for several pages). --print draws for paper, without the page's shadow,\n"
                           "  outline and margin shading. --dpi sets the resolution of .png pages\n"
                           "  (default 150). --report lists the words a .bww or .bmw import passed\n"
                           "  over, \"FILE:LINE: passed over WORD\" a line on standard output.\n"
                           "  --strict reads a .bww or .bmw tune as the older program did.\n"
                           "  OUT may also be a .wav file, rendered with the PLAY OPTIONS: --tempo BPM\n"
                           "  (default: the score's), --part all|1-4 (one part at full level),\n"
                           "  --instrument bagpipes|chanter|smallpipes-bb|smallpipes-a|smallpipes-c|\n"
                           "  smallpipes-d, --samples DIR (default: the data folder's \"Instrument\n"
                           "  Samples\").\n"
                           "  With --to and --out, convert turns each IN into DIR/NAME.FMT, FMT one of\n"
                           "  skb, skp, pdf, svg, png or wav, several at once, with the same OPTIONS;\n"
                           "  DIR is made if missing. A summary ends it on standard error; the exit\n"
                           "  status is 1 if any file was refused. A file that takes over two minutes\n"
                           "  is stopped and refused.\n"
                           "  movements lists the note and movement galleries with the pitches and\n"
                           "  playing weights of each movement's gracenotes. play sounds the tune\n"
                           "  through the sound server, showing the time and the bar, until it ends;\n"
                           "  --loop plays it again until Ctrl-C, and --no-sound goes through it at\n"
                           "  its pace without a sound device.\n"
                           "  make-samples generates the instrument samples into DIR from a General MIDI\n"
                           "  SoundFont; corrieval-cli make-samples --help lists its options.\n";
} // namespace

int corrieval::cli::ReportFileProblem(QTextStream& err, const QString& file, const QString& problem)
{
    err << "corrieval-cli: " << file << ": " << problem << Qt::endl;
    return FileFailed;
}

int corrieval::cli::ReportUsage(QTextStream& err, const QString& problem)
{
    err << "corrieval-cli: " << problem << '\n' << kUsage << Qt::flush;
    return BadCommandLine;
}

int main(int argc, char** argv)
{
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
    QTextStream out(stdout);
    QTextStream err(stderr);

    QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty())
        return ReportUsage(err, QStringLiteral("no command given"));
    const QString command = args.takeFirst();
    if (command == QLatin1String("info"))
        return RunInfo(args, out, err);
    if (command == QLatin1String("convert"))
        return RunConvert(args, out, err);
    if (command == QLatin1String("movements"))
        return RunMovements(args, out, err);
    if (command == QLatin1String("sequence"))
        return RunSequence(args, out, err);
    if (command == QLatin1String("play"))
        return RunPlay(args, out, err);
    if (command == QLatin1String("make-samples"))
        return RunMakeSamples(args, out, err);
    if (command == QLatin1String("--help") || command == QLatin1String("help")) {
        out << kUsage << Qt::flush;
        return Success;
    }
    return ReportUsage(err, QStringLiteral("unknown command '%1'").arg(command));
}
