#include "cli/Commands.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <QFileInfo>

namespace corrieval::cli {

namespace {
QString Suffix(const QString& path) { return QFileInfo(path).suffix().toLower(); }
} // namespace

int RunConvert(const QStringList& args, QTextStream&, QTextStream& err)
{
    if (args.size() != 2)
        return ReportUsage(err, QStringLiteral("convert takes an input and an output file"));
    const QString& in = args[0];
    const QString& out = args[1];
    const QString inKind = Suffix(in);
    const QString outKind = Suffix(out);
    if (inKind != QLatin1String("skb") && inKind != QLatin1String("skt"))
        return ReportUsage(err, QStringLiteral("cannot read '%1': give a .skb or .skt file").arg(in));
    if (outKind != QLatin1String("skb") && outKind != QLatin1String("skp"))
        return ReportUsage(err, QStringLiteral("cannot write '%1': give a .skb or .skp file").arg(out));

    return GuardFileErrors(err, [&] {
        const auto doc = LoadScore(in);
        if (outKind == QLatin1String("skp"))
            SavePlayerFile(*doc, out);
        else
            SaveScore(*doc, out);
        return static_cast<int>(Success);
    });
}

} // namespace corrieval::cli
