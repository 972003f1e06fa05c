#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "platform/MovementDefinitions.h"

namespace corrieval::cli {

namespace {

const CommandHelp kHelp{"movements", "movements",
                        "Lists the note and movement galleries as the desktop program offers them, an entry "
                        "a line: its place in the gallery, its name, the digits that place its notes, and "
                        "what it gives, a note value or the pitches and playing weights of its gracenotes."};

constexpr const char* kPitchNames[] = {"High A", "High G", "F", "E", "D", "C", "B", "Low A", "Low G"};

// What an entry gives when it is picked: a plain note, or a movement's gracenotes by name with
// their playing weights, built exactly as the galleries build them.
QString Describe(const PaletteEntry& entry)
{
    if (entry.RelativeNotePositions.isEmpty()) {
        if (entry.Chars.isEmpty())
            return QStringLiteral("[no note defined]");
        const auto note = CNoteEx::NoteFromChar(entry.Chars.front().unicode());
        return QStringLiteral("note value %1").arg(note->Duration);
    }
    CFixedNoteGroup group(entry.Name);
    group.BuildNotes(entry.Chars, entry.RelativeNotePositions, 0, 0);
    QStringList pitches;
    QStringList weights;
    for (const auto& child : group.Children()) {
        const auto* note = static_cast<const CNoteEx*>(child.get());
        pitches << QString::fromLatin1(kPitchNames[note->Pitch - HighestPitch]);
        weights << QString::number(static_cast<double>(note->Weight), 'g', 4);
    }
    QString text =
        pitches.join(QStringLiteral(", ")).leftJustified(48) + QStringLiteral("  ") + weights.join(' ');
    if (pitches.isEmpty())
        text = QStringLiteral("[no notes defined]");
    else if (entry.Chars.size() != entry.RelativeNotePositions.size())
        text += QStringLiteral("  [%1 characters but %2 digits: all on High A]")
                    .arg(entry.Chars.size())
                    .arg(entry.RelativeNotePositions.size());
    return text;
}

} // namespace

int RunMovements(const QStringList& args, QTextStream& out, QTextStream& err)
{
    CommandLine line(kHelp);
    if (const auto status = line.Parse(args, out, err))
        return *status;
    if (!line.Files().isEmpty())
        return line.Wrong(err, QStringLiteral("movements takes no arguments"));
    // What the app offers is what its first start leaves in the store.
    const QString problem = InstallMovementDefinitions();
    if (!problem.isEmpty())
        err << "corrieval-cli: " << problem << Qt::endl;

    for (const char* palette : MovementPalettes) {
        out << palette << '\n';
        for (const PaletteEntry& entry : ReadPalette(QString::fromLatin1(palette)))
            out << QStringLiteral("%1  %2 %3 %4\n")
                       .arg(QString::number(entry.ToolbarIndex).rightJustified(3),
                            entry.Name.leftJustified(40), entry.RelativeNotePositions.leftJustified(9),
                            Describe(entry));
    }
    out.flush();
    return problem.isEmpty() ? Success : FileFailed;
}

} // namespace corrieval::cli
