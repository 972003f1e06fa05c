#include "cli/BatchConvert.h"
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/InputReader.h"
#include "cli/PlayOptions.h"
#include "formats/bww/BwwProblems.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "notation/MusicFont.h"
#include "platform/PageExport.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <functional>
#include <map>
#include <variant>

namespace corrieval::cli {

namespace {

// A printer's finest; beyond it one page image takes gigabytes.
constexpr int kMaxDpi = 1200;

// What a batch may be converted to, as --to names it.
const QStringList kBatchKinds{QStringLiteral("skb"), QStringLiteral("skp"), QStringLiteral("pdf"),
                              QStringLiteral("svg"), QStringLiteral("png"), QStringLiteral("wav")};

QString Suffix(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

int DrawPages(const QString& in, const QString& out, platform::PageFormat format,
              const platform::PageExportOptions& options, bww::ImportLog& log, QTextStream& stdOut,
              QTextStream& err)
{
    if (const QString problem = LoadMusicFont(); !problem.isEmpty()) {
        err << "corrieval-cli: " << problem << Qt::endl;
        return FileFailed;
    }
    return GuardFileErrors(err, [&] {
        const auto doc = ReadInput(in, &log);
        for (const QString& file : platform::ExportPages(*doc, out, format, options))
            stdOut << file << '\n';
        stdOut.flush();
        return static_cast<int>(Success);
    });
}

const CommandHelp kHelp{
    "convert", "convert TUNE OUT [OPTIONS]\nconvert --to FMT --out DIR [OPTIONS] TUNE...",
    "Converts a tune into OUT, of the kind its extension names: a score (.skb), a player file (.skp), the "
    "pages drawn as .pdf, .svg or .png (OUT-1.png, OUT-2.png, ... for several pages), or the tune rendered "
    "as it plays into .wav, with --tempo, --part, --instrument and --samples. The files written are listed "
    "on standard output.\n\n"
    "With --to and --out it converts each TUNE into DIR/NAME.FMT, several side by side, each in a process "
    "of its own: a file that fails, or takes over two minutes and is stopped, is refused alone. DIR is made "
    "if missing. A summary line ends it on standard error, and the exit status is 1 if any file was "
    "refused.\n\n"
    "OUT is never left half-written."};

// The options of convert; the files are its positional arguments.
struct ConvertLine : CommandLine {
    // The batch form: every file given is an input.
    QCommandLineOption To{QStringLiteral("to"),
                          QStringLiteral("with --out: convert every TUNE to FMT, one of skb, skp, pdf, svg, "
                                         "png or wav"),
                          QStringLiteral("FMT")};
    QCommandLineOption OutDir{QStringLiteral("out"), QStringLiteral("with --to: the folder to write into"),
                              QStringLiteral("DIR")};
    QCommandLineOption Print{QStringLiteral("print"),
                             QStringLiteral("draw pages as for the printer, music alone, without the page's "
                                            "shadow, outline and shaded margins")};
    QCommandLineOption Dpi{QStringLiteral("dpi"),
                           QStringLiteral("the resolution of .png pages, 1 to 1200 (default 150)"),
                           QStringLiteral("N"), QStringLiteral("150")};
    QCommandLineOption Report{QStringLiteral("report"),
                              QStringLiteral("list the words of a .bww or .bmw tune that the import passed "
                                             "over, \"FILE:LINE: passed over WORD\" a line on standard "
                                             "output")};
    QCommandLineOption Strict{QStringLiteral("strict"),
                              QStringLiteral("read a .bww or .bmw tune as the older program did")};
    PlayOptions Play; // for .wav output

    ConvertLine() : CommandLine(kHelp)
    {
        Add(QList{To, OutDir, Print, Dpi, Report, Strict} + Play.Options());
    }
    bool IsBatch() const { return Parser().isSet(To) || Parser().isSet(OutDir); }

    // The options given that apply to each file, as a single conversion takes them.
    QStringList FileOptions() const
    {
        QStringList args;
        for (const QCommandLineOption& option :
             QList<QCommandLineOption>{Dpi, Print, Report, Strict} + Play.Options()) {
            if (!Parser().isSet(option))
                continue;
            args << QStringLiteral("--") + option.names().front();
            if (!option.valueName().isEmpty())
                args << Parser().value(option);
        }
        return args;
    }
};

// One conversion, checked and ready to run; it fills the log when it imports a BWW or BMW tune.
using Conversion = std::function<int(bww::ImportLog& log, QTextStream& out, QTextStream& err)>;

// The conversion of `in` into `out` with the options of the line, or what is wrong with them.
std::variant<Conversion, QString> Plan(const ConvertLine& line, const QString& in, const QString& out)
{
    const QCommandLineParser& parser = line.Parser();
    const QString outKind = Suffix(out);
    if (QString problem = InputProblem(in); !problem.isEmpty())
        return problem;
    if (outKind == QLatin1String("wav") && !parser.isSet(line.Dpi) && !parser.isSet(line.Print)) {
        const auto settings = line.Play.Read(parser);
        if (const QString* problem = std::get_if<QString>(&settings))
            return *problem;
        return [in, out, settings = std::get<PlaySettings>(settings)](bww::ImportLog& log,
                                                                      QTextStream& stdOut, QTextStream& err) {
            return ConvertToWav(in, out, settings, stdOut, err, &log);
        };
    }
    if (line.Play.AnySet(parser))
        return QStringLiteral("--tempo, --part, --instrument and --samples apply to .wav output");

    if (const auto format = platform::PageFormatOfFile(out)) {
        if (parser.isSet(line.Dpi) && format != platform::PageFormat::Png)
            return QStringLiteral("--dpi applies to .png output only");
        platform::PageExportOptions options;
        bool isNumber = false;
        options.Dpi = parser.value(line.Dpi).toInt(&isNumber);
        if (!isNumber || options.Dpi < 1 || options.Dpi > kMaxDpi)
            return QStringLiteral("--dpi takes a whole number from 1 to %1").arg(kMaxDpi);
        options.Mode = parser.isSet(line.Print) ? OutputMode::Printer : OutputMode::Screen;
        return
            [in, out, format = *format, options](bww::ImportLog& log, QTextStream& stdOut, QTextStream& err) {
                return DrawPages(in, out, format, options, log, stdOut, err);
            };
    }

    if (outKind != QLatin1String("skb") && outKind != QLatin1String("skp") && outKind != QLatin1String("wav"))
        return QStringLiteral("cannot write '%1': give a .skb, .skp, .pdf, .svg, .png or .wav file").arg(out);
    if (parser.isSet(line.Dpi) || parser.isSet(line.Print))
        return QStringLiteral("--dpi and --print apply to .pdf, .svg and .png output");
    return [in, out, player = outKind == QLatin1String("skp")](bww::ImportLog& log, QTextStream&,
                                                               QTextStream& err) {
        return GuardFileErrors(err, [&] {
            const auto doc = ReadInput(in, &log);
            if (player)
                SavePlayerFile(*doc, out);
            else
                SaveScore(*doc, out);
            return static_cast<int>(Success);
        });
    };
}

// convert --to FMT --out DIR FILE...: each file into DIR under its own name, in child processes.
int RunBatchConvert(const ConvertLine& line, QTextStream& stdOut, QTextStream& err)
{
    const QCommandLineParser& parser = line.Parser();
    if (!parser.isSet(line.To) || !parser.isSet(line.OutDir))
        return line.Wrong(err, QStringLiteral("--to and --out go together"));
    const QString kind = parser.value(line.To).toLower();
    if (!kBatchKinds.contains(kind))
        return line.Wrong(err, QStringLiteral("--to takes skb, skp, pdf, svg, png or wav"));
    const QStringList inputs = parser.positionalArguments();
    if (inputs.isEmpty())
        return line.Wrong(err, QStringLiteral("convert --to takes one or more input files"));

    const QDir outDir(parser.value(line.OutDir));
    std::vector<BatchJob> jobs;
    std::map<QString, QString> inputOfName; // two inputs of one name would write the same output
    for (const QString& in : inputs) {
        const QString name = QFileInfo(in).completeBaseName();
        if (const auto [taken, added] = inputOfName.emplace(name, in); !added)
            return line.Wrong(err,
                              QStringLiteral("'%1' and '%2' would both be written to '%3'")
                                  .arg(taken->second, in, outDir.filePath(name + QLatin1Char('.') + kind)));
        BatchJob job{in, outDir.filePath(name + QLatin1Char('.') + kind)};
        if (const auto plan = Plan(line, job.In, job.Out); std::holds_alternative<QString>(plan))
            return line.Wrong(err, std::get<QString>(plan));
        jobs.push_back(std::move(job));
    }
    if (!outDir.mkpath(QStringLiteral(".")))
        return ReportFileProblem(err, outDir.path(), QStringLiteral("the folder could not be made"));
    return RunBatch(jobs, line.FileOptions(), stdOut, err);
}

} // namespace

bool ConvertDrawsPages(const QStringList& args)
{
    ConvertLine line;
    if (!line.ParseSilently(args) || line.IsBatch())
        return false;
    const QStringList files = line.Parser().positionalArguments();
    return files.size() == 2 && platform::PageFormatOfFile(files[1]).has_value();
}

int RunConvert(const QStringList& args, QTextStream& stdOut, QTextStream& err)
{
    ConvertLine line;
    if (const auto status = line.Parse(args, stdOut, err))
        return *status;
    if (line.IsBatch())
        return RunBatchConvert(line, stdOut, err);

    const QStringList files = line.Parser().positionalArguments();
    if (files.size() != 2)
        return line.Wrong(err, QStringLiteral("convert takes an input and an output file"));
    const auto plan = Plan(line, files[0], files[1]);
    if (const QString* problem = std::get_if<QString>(&plan))
        return line.Wrong(err, *problem);
    bww::ImportLog log;
    if (line.Parser().isSet(line.Strict))
        log.Mode = bww::Reading::Strict;
    const int status = std::get<Conversion>(plan)(log, stdOut, err);
    if (line.Parser().isSet(line.Report))
        PrintPassedWords(files[0], log, stdOut);
    return status;
}

} // namespace corrieval::cli
