#pragma once

#include <vector>

namespace corrieval {

class CNoteGroupEx;
class CScoObj;

// "Group" and "Ungroup" on the objects selected in a view, in the order they were selected. The
// commands change the selection as they go, so they work on a copy of it. Grouping is also how
// semiquavers are typed: each press adds a beam to notes already beamed.

// Two or more notes of one bar or group, one note of a group, or one group alone.
bool CanGroup(const std::vector<CScoObj*>& selection);
// The first object is a note of a group, or the selection is one group alone.
bool CanUngroup(const std::vector<CScoObj*>& selection);

// A group alone, or notes already in groups: each gains a beam, up to three. Otherwise the
// selected notes of crotchet to demisemiquaver are beamed, each gaining a beam, into a new group
// in time order in the bar of the last of them, which becomes the one object selected; longer
// notes, gracenotes and everything else stay as they are. Returns the new group, or null.
CNoteGroupEx* GroupNotes(std::vector<CScoObj*> selection);
// A group alone loses a beam from each note; selected notes of groups lose one each. Quavers
// leave their group as crotchets, and a group left with one note lets it go too. A group left
// empty is deleted, so the selection must be read afresh from the view afterwards.
void UngroupNotes(std::vector<CScoObj*> selection);

} // namespace corrieval
