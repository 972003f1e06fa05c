#include "formats/score/OlderRecords.h"

#include "notation/Text.h"

#include <algorithm>

namespace corrieval {

void SerializeText(CArchive& ar, CText& text)
{
    ar.Sync(text.X);
    ar.Sync(text.Y);
    ar.Sync(text.Width);
    ar.Sync(text.Height);
    ar.Sync(text.PointSize);
    ar.Sync(text.LayoutWords[0]);
    ar.Sync(text.LayoutWords[1]);
    ar.Sync(text.Face);
    ar.Sync(text.Text);
    ar.Sync(text.RecordVersion);
    // Records of version 1 lack the third word, and those before version 3 the style.
    if (ar.IsStoring() || text.RecordVersion != 1)
        ar.Sync(text.LayoutWords[2]);
    else
        text.LayoutWords[2] = 0;
    if (ar.IsStoring() || text.RecordVersion >= 3)
        ar.Sync(text.Style);
    else
        text.Style = 0;
    ar.Sync(text.LayoutWords[3]);
    if (ar.IsLoading()) {
        text.RecordVersion = std::max(text.RecordVersion, CText::CurrentRecordVersion);
        text.RebuildFont();
    }
}

} // namespace corrieval
