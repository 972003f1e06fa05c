#include "cli/Commands.h"
#include "samples/SampleGenerator.h"

namespace corrieval::cli {

int RunMakeSamples(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.contains(QLatin1String("--help"))) {
        out << "usage: corrieval-cli make-samples DIR [options]\n" << samples::GeneratorUsage << Qt::flush;
        return Success;
    }
    samples::GeneratorOptions options;
    if (const QString problem = samples::ParseGeneratorArguments(args, options); !problem.isEmpty())
        return ReportUsage(err, QStringLiteral("make-samples: %1").arg(problem));
    if (options.Folder.isEmpty())
        return ReportUsage(err, QStringLiteral("make-samples takes the folder to fill"));
    const samples::GeneratorResult result =
        samples::GenerateSamples(options, [&](const QString& line) { out << line << Qt::endl; });
    return result.Ok() ? static_cast<int>(Success) : ReportFileProblem(err, result.File, result.Problem);
}

} // namespace corrieval::cli
