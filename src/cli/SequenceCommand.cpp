#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "model/CorrievalDoc.h"
#include "notation/NoteEx.h"
#include "playback/TuneSequence.h"

#include <iterator>

namespace corrieval::cli {

namespace {

const CommandHelp kHelp{"sequence", "sequence TUNE",
                        "Prints the notes a tune plays, part by part in the order they sound, one a line "
                        "with tabs between: part (0 to 3), index, start and length in the mixer's ticks, "
                        "sample index, note name, duration code and playing weight."};

// The notes of the nine recordings, by sample index.
QString NoteName(std::int32_t sampleIndex)
{
    static const char* const kNames[] = {"Low G", "Low A", "B", "C", "D", "E", "F", "High G", "High A"};
    if (sampleIndex < 0 || sampleIndex >= static_cast<std::int32_t>(std::size(kNames)))
        return QStringLiteral("?");
    return QString::fromLatin1(kNames[sampleIndex]);
}

} // namespace

int RunSequence(const QStringList& args, QTextStream& out, QTextStream& err)
{
    return PrintFromTune(kHelp, args, out, err, [&](CCorrievalDoc& doc) {
        CTuneSequence sequence(&doc);
        sequence.Build(nullptr);
        for (int part = 0; part < CTuneSequence::PartCount; ++part) {
            const CNoteSampleArray& list = sequence.PlayList(part);
            for (std::size_t i = 0; i < list.size(); ++i) {
                const CNoteSample& record = *list[i];
                out << part << '\t' << i << '\t' << record.Start << '\t' << record.Length << '\t'
                    << record.SampleIndex << '\t' << NoteName(record.SampleIndex) << '\t'
                    << record.Note->Duration << '\t' << record.Note->Weight << '\n';
            }
        }
    });
}

} // namespace corrieval::cli
