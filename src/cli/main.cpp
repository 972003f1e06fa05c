#include "cli/Commands.h"

#include <QCoreApplication>

#include <cstdio>

using namespace corrieval::cli;

namespace {
const char* const kUsage = "usage: corrieval-cli info FILE\n"
                           "       corrieval-cli convert IN OUT\n";
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
    QCoreApplication app(argc, argv);
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
    if (command == QLatin1String("--help") || command == QLatin1String("help")) {
        out << kUsage << Qt::flush;
        return Success;
    }
    return ReportUsage(err, QStringLiteral("unknown command '%1'").arg(command));
}
