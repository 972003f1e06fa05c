#include "formats/bww/BwwNoteGrid.h"

namespace corrieval::bww {

bool NoteGrid::NewRow(CBar::Edge start)
{
    m_rowOpen = m_rows < MaxRows;
    m_rowFull = false;
    if (!m_rowOpen)
        return false;
    m_edges[m_rows] = {start, CBar::Edge::Plain};
    m_startsLine[m_rows] = m_lineStartPending;
    m_lineStartPending = false;
    m_grid[m_rows++].clear();
    return true;
}

void NoteGrid::SetStart(CBar::Edge edge)
{
    if (m_rowOpen)
        m_edges[m_rows - 1].Start = edge;
}

void NoteGrid::SetEnd(CBar::Edge edge)
{
    if (m_rows > 0)
        m_edges[m_rows - 1].End = edge;
}

bool NoteGrid::Add(const Slot& slot)
{
    if (!m_rowOpen)
        return false;
    std::vector<Slot>& row = m_grid[m_rows - 1];
    if (m_bounded && row.size() >= MaxSlots) {
        m_rowFull = true;
        return false;
    }
    row.push_back(slot);
    return true;
}

NoteGrid::Slot* NoteGrid::Previous(std::size_t back)
{
    if (!m_rowOpen || m_rowFull || back == 0 || back > m_grid[m_rows - 1].size())
        return nullptr;
    std::vector<Slot>& row = m_grid[m_rows - 1];
    return &row[row.size() - back];
}

void NoteGrid::DropEmptyLast()
{
    if (m_rows == 0 || !m_grid[m_rows - 1].empty())
        return;
    --m_rows;
    m_rowOpen = false;
}

void NoteGrid::Clear()
{
    m_rows = 0;
    m_rowOpen = false;
}

} // namespace corrieval::bww
