#include "notation/TieCommand.h"

#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TieEx.h"

#include <optional>

namespace corrieval {

namespace {

// The value of a gracenote outside a movement: it takes no part in a tie.
constexpr NoteDuration kLoneGracenote = 64;

// A selected note, or the notes of a selected beamed group; other items hold none that tie.
std::vector<CNoteEx*> NotesOf(CScoObj* item)
{
    if (auto* note = dynamic_cast<CNoteEx*>(item))
        return {note};
    std::vector<CNoteEx*> notes;
    if (auto* group = dynamic_cast<CNoteGroupEx*>(item)) {
        for (const auto& child : group->Children()) {
            if (auto* note = dynamic_cast<CNoteEx*>(child.get()))
                notes.push_back(note);
        }
    }
    return notes;
}

// A group sounds into a tie with its last note.
std::optional<NotePitch> PitchOf(const CScoObj* item)
{
    if (const auto* note = dynamic_cast<const CNoteEx*>(item)) {
        if (note->Duration == kLoneGracenote)
            return std::nullopt;
        return note->Pitch;
    }
    if (const auto* group = dynamic_cast<const CNoteGroupEx*>(item);
        group != nullptr && group->ChildCount() > 0)
        return PitchOf(group->ChildAt(group->ChildCount() - 1));
    return std::nullopt;
}

// The items whose count and pitches decide: the selection when it starts with a note, else the
// children of its first item, so that one group of three can become a triplet.
std::vector<const CScoObj*> CountedItems(const std::vector<CScoObj*>& selection)
{
    if (selection.empty())
        return {};
    if (dynamic_cast<const CNoteEx*>(selection.front()) != nullptr)
        return {selection.begin(), selection.end()};
    std::vector<const CScoObj*> items;
    if (const auto* head = dynamic_cast<const CGraphObjContainer*>(selection.front())) {
        for (const auto& child : head->Children())
            items.push_back(child.get());
    }
    return items;
}

bool MayTie(const std::vector<const CScoObj*>& items)
{
    if (items.size() == 3)
        return true;
    if (items.size() != 2)
        return false;
    const std::optional<NotePitch> first = PitchOf(items[0]);
    return first.has_value() && first == PitchOf(items[1]);
}

} // namespace

void Untie(CNoteEx& note, CCorrievalDoc& doc)
{
    CTieEx* tie = note.Tie;
    if (tie == nullptr)
        return;
    note.Tie = nullptr;
    note.InvalidateSelf();
    for (bool empty = false; !empty;) {
        CNoteEx* member = tie->Notes.empty() ? &note : tie->Notes.back();
        if (member->Tie == tie) {
            member->Tie = nullptr;
            member->InvalidateSelf();
        }
        empty = tie->RemoveNote(member, doc);
    }
}

bool ToggleTie(const std::vector<CScoObj*>& selection, CCorrievalDoc& doc)
{
    std::vector<CNoteEx*> joining;
    bool untied = false;
    for (CScoObj* item : selection) {
        // A lone gracenote stays out of a tie; every note of a beamed group joins.
        const bool lone = dynamic_cast<CNoteEx*>(item) != nullptr;
        for (CNoteEx* note : NotesOf(item)) {
            if (note->Tie != nullptr) {
                Untie(*note, doc);
                untied = true;
            } else if (!lone || note->Duration != kLoneGracenote) {
                joining.push_back(note);
            }
        }
    }
    if (untied) {
        doc.SetModifiedFlag();
        return true;
    }

    if (!MayTie(CountedItems(selection)) || joining.size() < 2) {
        ShowMessage(QStringLiteral("You can only tie 2 notes of the same pitch, or any 3 notes as a triple."),
                    MessageKind::Warning);
        return false;
    }
    auto tie = std::make_unique<CTieEx>();
    tie->Id = doc.NextTieId();
    for (CNoteEx* note : joining)
        tie->AddNote(note);
    tie->InvalidateSelf();
    doc.Ties.push_back(std::move(tie));
    doc.SetModifiedFlag();
    return true;
}

} // namespace corrieval
