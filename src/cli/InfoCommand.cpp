#include "cli/Commands.h"
#include "cli/TreePrinter.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

namespace corrieval::cli {

int RunInfo(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.size() != 1)
        return ReportUsage(err, QStringLiteral("info takes one score file"));
    return GuardFileErrors(err, [&] {
        const auto doc = LoadScore(args.front());
        PrintTree(*doc, out);
        out.flush();
        return static_cast<int>(Success);
    });
}

} // namespace corrieval::cli
