#pragma once

#include "model/Geometry.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CStaveArea;
class CTieEx;
class CTunePage;

// The page format that all pages of a tune share, as the page set-up dialog edits it.
struct PageSetup {
    float Width = 0;
    float Height = 0;
    float LeftMargin = 0;
    float RightMargin = 0;
    float TopMargin = 0;
    float BottomMargin = 0;
};

// One open tune: its pages, its ties, the page format, the printer settings, the tempo, the zoom
// to restore and the lock. The root of the score tree and of the score file.
class CCorrievalDoc {
public:
    static constexpr std::uint32_t CurrentVersion = 7;
    static constexpr std::size_t PrinterSettingsSize = 220;

    CCorrievalDoc();
    CCorrievalDoc(const CCorrievalDoc&) = delete;
    CCorrievalDoc& operator=(const CCorrievalDoc&) = delete;
    // Ties go first, then pages, each from the tail.
    ~CCorrievalDoc();

    // A new tune has one page.
    bool OnNewDocument();
    // Inserts a page after the page at `index`, at the end when `index` is the page count.
    CTunePage* AddPage(std::size_t index);
    void DeletePage(CTunePage* page);
    // Stacks the pages top to bottom, each of the document's paper size.
    void LayoutPages();
    void EditPageSetup();
    void ApplyPageMargins(float left, float right, float top, float bottom);
    // The first bar of the first stave of the first music area holds a note. Only that bar is
    // looked at: it gates the transport and the export cheaply.
    bool HasMusic() const;
    CTieEx* TieAt(float x, float y) const;
    // The id for a new tie. Ids count on from the highest in use rather than from the number of
    // ties, so that a tie made after another was undone does not share its id and merge with it
    // when the file is read back.
    std::int32_t NextTieId() const;
    // Exchanges everything the score file holds (pages, ties, paper, printer settings, tempo,
    // lock) with `other`, leaving the name, the modified flag and the zoom to restore. Objects
    // keep their addresses, so undo can put an earlier state back into the document that the
    // views point at.
    void SwapContent(CCorrievalDoc& other);

    // A template (".skt") opens as a new untitled tune, so Save never overwrites it.
    void SetPathName(const QString& path);
    const QString& PathName() const { return m_pathName; }
    const QString& Title() const { return m_title; }
    // An imported tune is named after its file while it has no path of its own.
    void SetTitle(const QString& title) { m_title = title; }
    void SetModifiedFlag(bool modified = true) { m_modified = modified; }
    bool IsModified() const { return m_modified; }

    std::int32_t Locked = 0;
    std::int32_t CheckValues = 0;
    std::vector<std::unique_ptr<CTieEx>> Ties;
    CStaveArea* CurrentStaveArea = nullptr; // set by each stave area as it is read or written
    std::int32_t PlayerExport = 0;
    std::vector<std::unique_ptr<CTunePage>> Pages;
    std::uint32_t Version = CurrentVersion;
    float PageWidth;
    float PageHeight;
    std::array<std::uint8_t, PrinterSettingsSize> PrinterSettings{};
    std::int32_t Tempo = 74;
    float LoadedZoom = 1.0f; // negative: the view zooms to fit the width
    std::int32_t ZoomPending = 0;

private:
    QString m_pathName;
    QString m_title;
    bool m_modified = false;
};

} // namespace corrieval
