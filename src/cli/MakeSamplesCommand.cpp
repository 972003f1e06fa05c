#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "samples/SampleGenerator.h"

namespace corrieval::cli {

int RunMakeSamples(const QStringList& args, QTextStream& out, QTextStream& err)
{
    // The options are the generator's own, shared with the build's make-samples program.
    if (args.contains(QLatin1String("--help")) || args.contains(QLatin1String("-h"))) {
        out << "usage: corrieval-cli make-samples DIR [OPTIONS]\n\n"
            << Wrapped(
                   QStringLiteral("Generates the recordings of the nine notes of each instrument into DIR "
                                  "from a General MIDI SoundFont, for play and .wav output."),
                   0)
            << "\nOptions:\n"
            << samples::GeneratorUsage << "  -h, --help             show this help and exit\n"
            << Qt::flush;
        return Success;
    }
    const QString command = QStringLiteral("make-samples");
    samples::GeneratorOptions options;
    if (const QString problem = samples::ParseGeneratorArguments(args, options); !problem.isEmpty())
        return ReportUsage(err, command, problem);
    if (options.Folder.isEmpty())
        return ReportUsage(err, command, QStringLiteral("make-samples takes the folder to fill"));
    const samples::GeneratorResult result =
        samples::GenerateSamples(options, [&](const QString& line) { out << line << Qt::endl; });
    return result.Ok() ? static_cast<int>(Success) : ReportFileProblem(err, result.File, result.Problem);
}

} // namespace corrieval::cli
