#include "cli/Commands.h"
#include "cli/InputReader.h"
#include "cli/PlayOptions.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "notation/MusicFont.h"
#include "platform/PageExport.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace corrieval::cli {

namespace {

// A printer's finest; beyond it one page image takes gigabytes.
constexpr int kMaxDpi = 1200;

QString Suffix(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

int DrawPages(const QString& in, const QString& out, platform::PageFormat format,
              const platform::PageExportOptions& options, QTextStream& stdOut, QTextStream& err)
{
    if (const QString problem = LoadMusicFont(); !problem.isEmpty()) {
        err << "corrieval-cli: " << problem << Qt::endl;
        return FileFailed;
    }
    return GuardFileErrors(err, [&] {
        const auto doc = ReadInput(in);
        for (const QString& file : platform::ExportPages(*doc, out, format, options))
            stdOut << file << '\n';
        stdOut.flush();
        return static_cast<int>(Success);
    });
}

// The options of convert; the files are its positional arguments.
struct ConvertLine {
    QCommandLineParser Parser;
    QCommandLineOption Dpi{QStringLiteral("dpi"), QString(), QStringLiteral("N"), QStringLiteral("150")};
    QCommandLineOption Print{QStringLiteral("print")};
    PlayOptions Play; // for .wav output

    ConvertLine()
    {
        Parser.addOption(Dpi);
        Parser.addOption(Print);
        Play.AddTo(Parser);
    }
    bool Parse(const QStringList& args)
    {
        return Parser.parse(QStringList{QStringLiteral("convert")} + args);
    }
};

} // namespace

bool ConvertDrawsPages(const QStringList& args)
{
    ConvertLine line;
    const QStringList files = line.Parse(args) ? line.Parser.positionalArguments() : QStringList();
    return files.size() == 2 && platform::PageFormatOfFile(files[1]).has_value();
}

int RunConvert(const QStringList& args, QTextStream& stdOut, QTextStream& err)
{
    ConvertLine line;
    const QCommandLineParser& parser = line.Parser;
    if (!line.Parse(args))
        return ReportUsage(err, parser.errorText());

    const QStringList files = parser.positionalArguments();
    if (files.size() != 2)
        return ReportUsage(err, QStringLiteral("convert takes an input and an output file"));
    const QString& in = files[0];
    const QString& out = files[1];
    const QString outKind = Suffix(out);
    if (!CanReadInput(in))
        return ReportUsage(err, QStringLiteral("cannot read '%1': give %2").arg(in, ReadableInputs()));
    if (outKind == QLatin1String("wav") && !parser.isSet(line.Dpi) && !parser.isSet(line.Print)) {
        const auto settings = line.Play.Read(parser);
        if (const QString* problem = std::get_if<QString>(&settings))
            return ReportUsage(err, *problem);
        return ConvertToWav(in, out, std::get<PlaySettings>(settings), stdOut, err);
    }
    if (line.Play.AnySet(parser))
        return ReportUsage(
            err, QStringLiteral("--tempo, --part, --instrument and --samples apply to .wav output"));

    if (const auto format = platform::PageFormatOfFile(out)) {
        if (parser.isSet(line.Dpi) && format != platform::PageFormat::Png)
            return ReportUsage(err, QStringLiteral("--dpi applies to .png output only"));
        platform::PageExportOptions options;
        bool isNumber = false;
        options.Dpi = parser.value(line.Dpi).toInt(&isNumber);
        if (!isNumber || options.Dpi < 1 || options.Dpi > kMaxDpi)
            return ReportUsage(err, QStringLiteral("--dpi takes a whole number from 1 to %1").arg(kMaxDpi));
        options.Mode = parser.isSet(line.Print) ? OutputMode::Printer : OutputMode::Screen;
        return DrawPages(in, out, *format, options, stdOut, err);
    }

    if (outKind != QLatin1String("skb") && outKind != QLatin1String("skp") && outKind != QLatin1String("wav"))
        return ReportUsage(
            err,
            QStringLiteral("cannot write '%1': give a .skb, .skp, .pdf, .svg, .png or .wav file").arg(out));
    if (parser.isSet(line.Dpi) || parser.isSet(line.Print))
        return ReportUsage(err, QStringLiteral("--dpi and --print apply to .pdf, .svg and .png output"));
    return GuardFileErrors(err, [&] {
        const auto doc = ReadInput(in);
        if (outKind == QLatin1String("skp"))
            SavePlayerFile(*doc, out);
        else
            SaveScore(*doc, out);
        return static_cast<int>(Success);
    });
}

} // namespace corrieval::cli
