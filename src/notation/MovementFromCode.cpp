#include "notation/MovementFromCode.h"

#include "model/BarEx.h"
#include "model/Messages.h"
#include "notation/MovementCatalogue.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "platform/MovementDefinitions.h"

#include <algorithm>
#include <memory>

namespace corrieval {

namespace {

// The name a code's definition is read under. A code that is no movement is looked up all the
// same, under a name that no definition has.
QString DefinitionName(const CodeInfo& code)
{
    return code.Kind == CodeKind::Movement ? code.Name : QStringLiteral("unknown");
}

const CScoObj* AddPlainNote(const OlderNote& older, NoteDuration duration, CBarEx& bar, float x, float y,
                            float height, CTieEx* tie, RepeatLink repeat)
{
    auto note = std::make_unique<CNoteEx>();
    note->SetBounds(x, y, PlainNoteWidth, height);
    note->Pitch = std::clamp(30 - older.Position, HighestPitch, LowestPitch);
    note->Duration = duration;
    note->DotCut = older.Dot;
    note->GraceHead = false;
    note->Weight = older.Weight;
    note->RepeatKind = repeat.Kind;
    note->RepeatId = repeat.Kind > 0 ? repeat.Id : 0;
    note->UpdateChars();
    if (tie != nullptr)
        tie->AddNote(note.get());
    return bar.AddNoteSorted(std::move(note));
}

} // namespace

void MovementFromCode(const OlderNote& older, CBarEx& bar, float x, float y, float height, CTieEx* tie,
                      RepeatLink repeat, MovementDefinitionCache& definitions, MovementMade& made)
{
    const CodeInfo code = LookUpCode(older.Code);
    if (code.Kind == CodeKind::Note) {
        made = {QString(), 1, AddPlainNote(older, code.Duration, bar, x, y, height, tie, repeat)};
        return;
    }
    if (code.Kind != CodeKind::Movement) {
        ShowMessage(QStringLiteral("Unknown note type [%1]. This will be ignored.").arg(code.Token),
                    MessageKind::Warning);
    }
    const QString name = DefinitionName(code);
    const MovementDefinition& definition = definitions.Read(MovementCategory(older.Code), name);
    if (!definition.Usable())
        return;
    auto group = std::make_unique<CFixedNoteGroup>(name);
    group->BuildNotes(definition.Chars, definition.RelativeNotePositions, repeat.Kind, repeat.Id);
    const std::int32_t count = group->GetNoteCount();
    group->SetBounds(x, y, static_cast<float>(count) * MovementNoteWidth, height);
    made = {name, count, bar.AddNoteSorted(std::move(group))};
}

float WidthFromCode(std::uint32_t code, MovementDefinitionCache& definitions)
{
    const CodeInfo info = LookUpCode(code);
    if (info.Kind == CodeKind::Note)
        return PlainNoteWidth;
    const MovementDefinition& definition = definitions.Read(MovementCategory(code), DefinitionName(info));
    return definition.Usable() ? static_cast<float>(definition.Chars.size()) * MovementNoteWidth : 0.0f;
}

} // namespace corrieval
