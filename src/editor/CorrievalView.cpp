#include "editor/CorrievalView.h"

#include "editor/ViewHost.h"

namespace corrieval {

CCorrievalView::CCorrievalView(CCorrievalDoc& doc, ViewHost& host, QWidget* parent)
    : QAbstractScrollArea(parent), m_doc(doc), m_host(host)
{
}

void CCorrievalView::AddToSelection(CScoObj&) {}
void CCorrievalView::RemoveFromSelection(CScoObj&) {}
void CCorrievalView::InvalidateObject(const CScoObj&) { viewport()->update(); }
void CCorrievalView::PagesLaidOut() { viewport()->update(); }
void CCorrievalView::TuneImported(std::int32_t tempo) { m_host.TuneImported(*this, tempo); }
bool CCorrievalView::EditPageSetup(PageSetup&) { return false; }
void CCorrievalView::SetZoom(int percent) { m_zoom = percent / 100.0f; }
void CCorrievalView::FitToWidth() {}
int CCorrievalView::ZoomPercent() const { return static_cast<int>(m_zoom * 100); }
void CCorrievalView::KeepInView(float) {}
bool CCorrievalView::RunCommand(int) { return false; }
bool CCorrievalView::UpdateCommand(int, CommandState&) { return false; }

} // namespace corrieval
