#include "editor/CorrievalView.h"

#include "editor/PageSetupDialog.h"

#include "editor/CommandIds.h"
#include "editor/EditCommands.h"
#include "editor/PaletteCommands.h"
#include "editor/PrintLayout.h"
#include "editor/TextAreaEditor.h"
#include "editor/ViewHost.h"
#include "editor/ViewMouse.h"
#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchFile.h"
#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "model/TunePage.h"
#include "platform/QtPainter.h"

#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScrollBar>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>

namespace corrieval {

namespace {
constexpr QRgb kDesk = 0xFF646464;
// A scroll bar's arrow moves a tenth of the window.
constexpr int kLinesPerPage = 10;

float SavedZoom(float stored)
{
    // A damaged file may hold any number here; the view stays within the range it can show.
    return std::isfinite(stored) ? std::clamp(stored, ViewTransform::MinZoom, ViewTransform::MaxZoom) : 1.0f;
}
} // namespace

CCorrievalView::CCorrievalView(CCorrievalDoc& doc, ViewHost& host, QWidget* parent)
    : QAbstractScrollArea(parent),
      m_doc(doc),
      m_host(host),
      m_history(doc),
      m_commands(std::make_unique<EditCommands>(*this)),
      m_mouse(std::make_unique<ViewMouse>(*this)),
      m_textEditor(std::make_unique<TextAreaEditor>(*this))
{
    // Undo and redo replace the score's objects: nothing may point into the old ones.
    connect(&m_history, &UndoHistory::aboutToRestore, this, [this] {
        m_textEditor->Forget();
        m_selection.Forget();
        m_edit.ForgetScore();
    });
    connect(&m_history, &UndoHistory::restored, this, [this] {
        // The lock travels with the score: the painters read it from the session.
        Session().Locked = m_doc.Locked != 0;
        OnUpdate();
    });
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    // Every pixel of the viewport comes from the back buffer.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    // Pages are taller than wide at any zoom that fits their width, so the column nearly always
    // scrolls; a fixed bar keeps the width, and with it a width-following zoom, steady.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

CCorrievalView::~CCorrievalView() = default;

void CCorrievalView::AddToSelection(CScoObj& object)
{
    m_selection.Add(&object);
    m_textEditor->FollowSelection();
}

void CCorrievalView::RemoveFromSelection(CScoObj& object)
{
    m_selection.Remove(&object);
    m_textEditor->FollowSelection();
}

void CCorrievalView::InvalidateObject(const CScoObj& object)
{
    viewport()->update(Transform().DocumentRectToDevice(InvalidationBounds(object.GetBounds())));
    // A text area being edited may have moved or changed size: its editor goes with it.
    if (m_textEditor->Edits(object))
        m_textEditor->FollowView();
}

void CCorrievalView::PagesLaidOut()
{
    OnUpdate();
    ZoomChanged();
}

void CCorrievalView::TuneImported(std::int32_t tempo)
{
    OnUpdate();
    m_host.TuneImported(*this, tempo);
}

bool CCorrievalView::EditPageSetup(PageSetup& setup) { return CPageSetup::Edit(setup, this); }

bool CCorrievalView::RunCommand(int id)
{
    // Every command, Undo first of all, sees the typing so far as a step of its own.
    m_textEditor->Commit();
    const bool ran = RunOwnCommand(id);
    m_textEditor->FollowView();
    return ran;
}

bool CCorrievalView::RunOwnCommand(int id)
{
    switch (id) {
    case command::Print:
        Print();
        return true;
    case command::QuickPrint:
        QuickPrint();
        return true;
    case command::PrintPreview:
        PrintPreview();
        return true;
    default:
        return PaletteCommands(*this).RunCommand(id) || m_commands->RunCommand(id);
    }
}

bool CCorrievalView::UpdateCommand(int id, CommandState& state)
{
    if (id != command::Print && id != command::QuickPrint && id != command::PrintPreview)
        return PaletteCommands(*this).UpdateCommand(id, state) || m_commands->UpdateCommand(id, state);
    state.enabled = !m_doc.Pages.empty() && m_printIdle;
    state.checked = id == command::PrintPreview && m_preview != nullptr;
    return true;
}

void CCorrievalView::OnActivateView()
{
    if (!m_firstActivation)
        return;
    m_firstActivation = false;
    ApplyStoredZoom();
    OnUpdate();
    if (m_host.AutoZoom())
        m_zoom = ViewTransform::FitToWidth(viewport()->width(), static_cast<float>(logicalDpiX()),
                                           m_documentWidth);
    UpdateScrollRanges();
    ZoomChanged();
}

void CCorrievalView::ApplyStoredZoom()
{
    if (m_doc.ZoomPending == 0)
        return;
    m_doc.ZoomPending = 0;
    m_zoomToWidth = m_doc.LoadedZoom < 0;
    if (!m_zoomToWidth)
        m_zoom = SavedZoom(m_doc.LoadedZoom);
}

void CCorrievalView::SetZoom(int percent)
{
    m_zoomToWidth = percent < 0;
    if (!m_zoomToWidth)
        m_zoom = SavedZoom(percent / 100.0f);
    OnUpdate();
    ZoomChanged();
}

void CCorrievalView::FitToWidth()
{
    SetZoom(-1);
}

int CCorrievalView::ZoomPercent() const
{
    return static_cast<int>(m_zoom * 100);
}

void CCorrievalView::ZoomChanged()
{
    m_host.ZoomChanged(*this, m_zoom);
}

void CCorrievalView::DropSelection()
{
    m_selection.Clear();
}

void CCorrievalView::OnUpdate(const CScoObj* changed)
{
    m_documentWidth = 0;
    m_documentHeight = 0;
    for (const auto& page : m_doc.Pages) {
        m_documentWidth = std::max(m_documentWidth, page->Bounds().Width);
        m_documentHeight += page->Bounds().Height;
    }
    if (m_zoomToWidth)
        m_zoom = ViewTransform::FitToWidth(viewport()->width(), static_cast<float>(logicalDpiX()),
                                           m_documentWidth);
    UpdateScrollRanges();
    m_textEditor->FollowView();
    if (changed != nullptr)
        InvalidateObject(*changed);
    else
        viewport()->update();
}

void CCorrievalView::UpdateScrollRanges()
{
    const QSize extent = Transform().Extent();
    const QSize client = viewport()->size();
    horizontalScrollBar()->setPageStep(client.width());
    horizontalScrollBar()->setSingleStep(std::max(1, client.width() / kLinesPerPage));
    horizontalScrollBar()->setRange(0, std::max(0, extent.width() - client.width()));
    verticalScrollBar()->setPageStep(client.height());
    verticalScrollBar()->setSingleStep(std::max(1, client.height() / kLinesPerPage));
    verticalScrollBar()->setRange(0, std::max(0, extent.height() - client.height()));
}

void CCorrievalView::KeepInView(float y)
{
    if (const std::optional<int> scroll = Transform().KeepInView(y)) {
        verticalScrollBar()->setValue(*scroll);
        viewport()->update();
    }
}

ViewTransform CCorrievalView::Transform() const
{
    ViewTransform t;
    t.DpiX = static_cast<float>(logicalDpiX());
    t.DpiY = static_cast<float>(logicalDpiY());
    t.Zoom = m_zoom;
    t.Client = viewport()->size();
    t.Scroll = QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
    t.DocumentWidth = m_documentWidth;
    t.DocumentHeight = m_documentHeight;
    return t;
}

CTunePage* CCorrievalView::PageAt(PointF point) const
{
    for (const auto& page : m_doc.Pages) {
        if (page->ContentBox().Contains(point.X, point.Y))
            return page.get();
    }
    return nullptr;
}

CTunePage* CCorrievalView::FirstPageInView() const
{
    const QSize client = viewport()->size();
    const RectF window = Transform().DeviceRectToDocument({0, 0}, {client.width(), client.height()});
    for (const auto& page : m_doc.Pages) {
        if (page->Bounds().Overlaps(window))
            return page.get();
    }
    return nullptr;
}

const QImage& CCorrievalView::PaintBackBuffer(const QRect& clip)
{
    const qreal ratio = viewport()->devicePixelRatioF();
    const QSize pixels(static_cast<int>(std::ceil(clip.width() * ratio)),
                       static_cast<int>(std::ceil(clip.height() * ratio)));
    // The buffer only grows: most paints are smaller than the largest one.
    if (m_backBuffer.width() < pixels.width() || m_backBuffer.height() < pixels.height() ||
        m_backBuffer.devicePixelRatio() != ratio) {
        m_backBuffer = QImage(pixels.expandedTo(m_backBuffer.size()), QImage::Format_ARGB32_Premultiplied);
        m_backBuffer.setDevicePixelRatio(ratio);
    }
    const ViewTransform t = Transform();
    QPainter painter(&m_backBuffer);
    painter.setClipRect(QRect(QPoint(0, 0), clip.size()));
    painter.fillRect(QRect(QPoint(0, 0), clip.size()), QColor::fromRgba(kDesk));
    painter.translate(-clip.topLeft() - t.Scroll);
    // The score's painter scales both directions alike; a screen of unequal resolutions is
    // squared first.
    painter.scale(1.0, t.DpiY / t.DpiX);
    const PointF offset = t.Offset();
    platform::QtPainter inches(painter, t.DpiX, m_zoom, {-offset.X, -offset.Y});
    for (const auto& page : m_doc.Pages)
        page->DrawIfVisible(inches, OutputMode::Screen);
    m_mouse->PaintGhost(inches);
    return m_backBuffer;
}

void CCorrievalView::paintEvent(QPaintEvent* event)
{
    OnActivateView();
    const QRect clip = event->rect();
    const QImage& buffer = PaintBackBuffer(clip);
    QPainter painter(viewport());
    painter.drawImage(clip.topLeft(), buffer, QRectF(QPointF(0, 0), QSizeF(clip.size()) * buffer.devicePixelRatio()));
    m_mouse->PaintOverlay(painter);
    if (!m_firstPaint)
        return;
    m_firstPaint = false;
    // The frame empties the path as it hands it over, so the import runs once. It runs just after
    // this paint rather than within it: it may ask questions, and a dialog must not open inside a
    // paint.
    if (const QString path = m_host.TakePendingImport(); !path.isEmpty())
        QMetaObject::invokeMethod(
            this, [this, path] { RunImport(path); }, Qt::QueuedConnection);
}

void CCorrievalView::RunImport(const QString& path)
{
    if (path.right(3).compare(QLatin1String("glm"), Qt::CaseInsensitive) == 0)
        ImportGlenmarch(path);
    else
        ImportBww(path);
    DropSelection();
    viewport()->update();
}

void CCorrievalView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    OnUpdate();
    if (m_zoomToWidth)
        ZoomChanged();
}

void CCorrievalView::scrollContentsBy(int dx, int dy)
{
    // The centring does not depend on the scroll position: the pixels already drawn move along
    // and only the uncovered strip is painted.
    viewport()->scroll(dx, dy);
    m_textEditor->FollowView();
}

void CCorrievalView::mousePressEvent(QMouseEvent* event)
{
    m_mouse->Pressed(*event);
}

void CCorrievalView::mouseMoveEvent(QMouseEvent* event)
{
    m_mouse->Moved(*event);
}

void CCorrievalView::mouseReleaseEvent(QMouseEvent* event)
{
    m_mouse->Released(*event);
}

void CCorrievalView::contextMenuEvent(QContextMenuEvent* event)
{
    m_mouse->ContextMenu(*event);
}

void CCorrievalView::keyPressEvent(QKeyEvent* event)
{
    // A drag takes every key first: it decides which end it and which it ignores.
    if (!m_mouse->KeyPressed(*event) && !m_commands->KeyPressed(*event))
        QAbstractScrollArea::keyPressEvent(event);
}

void CCorrievalView::Print()
{
    QPrinter printer(QPrinter::HighResolution);
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(SuggestedPdfPath());
    }
    QPrintDialog dialog(&printer, this);
    dialog.setMinMax(1, static_cast<int>(m_doc.Pages.size()));
    if (dialog.exec() == QDialog::Accepted)
        PrintTo(printer, OutputMode::Printer);
}

void CCorrievalView::QuickPrint()
{
    QPrinter printer(QPrinter::HighResolution);
    if (ChoosePdfWhenNoPrinter(printer))
        PrintTo(printer, OutputMode::Printer);
}

QString CCorrievalView::SuggestedPdfPath() const
{
    const QString name = m_doc.Title().isEmpty() ? QStringLiteral("Tune") : m_doc.Title();
    return QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        .filePath(name + QStringLiteral(".pdf"));
}

bool CCorrievalView::ChoosePdfWhenNoPrinter(QPrinter& printer)
{
    if (!QPrinterInfo::availablePrinterNames().isEmpty())
        return true;
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Print to File"), SuggestedPdfPath(), tr("PDF files (*.pdf)"));
    if (path.isEmpty())
        return false;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    return true;
}

void CCorrievalView::PrintPreview()
{
    QPrinter printer(QPrinter::HighResolution);
    if (QPrinterInfo::availablePrinterNames().isEmpty())
        printer.setOutputFormat(QPrinter::PdfFormat);
    PreparePrinter(printer, m_doc);
    QPrintPreviewDialog dialog(&printer, this);
    // The dialog asks for the pages both to show them and, from its print button, to print them;
    // while it shows them the printer draws into pictures.
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* target) {
        const bool previewing = target->paintEngine()->type() == QPaintEngine::Picture;
        PrintTo(*target, previewing ? OutputMode::PrintPreview : OutputMode::Printer);
    });
    m_preview = &dialog;
    dialog.exec();
    m_preview = nullptr;
}

void CCorrievalView::PrintTo(QPrinter& printer, OutputMode mode)
{
    PreparePrinter(printer, m_doc);
    m_printIdle = false;
    PrintPages(printer, m_doc, mode);
    m_printIdle = true;
}

} // namespace corrieval
