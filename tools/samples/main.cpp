// make-samples: generates the instrument samples that the player loads (see SampleGenerator.h).

#include "platform/DataFolder.h"
#include "samples/SampleGenerator.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace corrieval;

namespace {
const char* const Usage = "usage: make-samples [DIR] [options]\n"
                          "  Without DIR, fills the data folder's \"Instrument Samples\", where the\n"
                          "  program looks for them.\n";
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.contains(QLatin1String("--help"))) {
        out << Usage << samples::GeneratorUsage << Qt::flush;
        return 0;
    }
    samples::GeneratorOptions options;
    if (const QString problem = samples::ParseGeneratorArguments(args, options); !problem.isEmpty()) {
        err << "make-samples: " << problem << '\n' << Usage << samples::GeneratorUsage << Qt::flush;
        return 2;
    }
    if (options.Folder.isEmpty())
        options.Folder = DataSubfolder(QStringLiteral("Instrument Samples"));
    const samples::GeneratorResult result =
        samples::GenerateSamples(options, [&](const QString& line) { out << line << Qt::endl; });
    if (!result.Ok()) {
        err << "make-samples: " << result.File << ": " << result.Problem << Qt::endl;
        return 1;
    }
    return 0;
}
