#include "notation/TieEx.h"

#include "notation/NoteEx.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTieEx, CScoObj);

void CTieEx::AddNote(CNoteEx* note)
{
    Notes.push_back(note);
    if (note->Tie == nullptr)
        note->Tie = this;
    const auto count = static_cast<std::int32_t>(Notes.size());
    TieValue = count >= 4 ? count - 1 : count;
}

} // namespace corrieval
