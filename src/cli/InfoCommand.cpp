#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/TreePrinter.h"
#include "model/CorrievalDoc.h"

namespace corrieval::cli {

namespace {

const CommandHelp kHelp{"info", "info TUNE",
                        "Prints the object tree of a tune, one object a line, indented by depth: the class, "
                        "its rectangle and the fields that matter for it."};

} // namespace

int RunInfo(const QStringList& args, QTextStream& out, QTextStream& err)
{
    return PrintFromTune(kHelp, args, out, err, [&](CCorrievalDoc& doc) { PrintTree(doc, out); });
}

} // namespace corrieval::cli
