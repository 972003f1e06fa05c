#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/InputReader.h"
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
    CommandLine line(kHelp);
    if (const auto status = line.Parse(args, out, err))
        return *status;
    const auto tune = line.OneTune(err);
    if (!tune)
        return BadCommandLine;
    return GuardFileErrors(err, [&] {
        const auto doc = ReadInput(*tune);
        PrintTree(*doc, out);
        out.flush();
        return static_cast<int>(Success);
    });
}

} // namespace corrieval::cli
