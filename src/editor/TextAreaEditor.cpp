#include "editor/TextAreaEditor.h"

#include "editor/CorrievalView.h"
#include "model/CorrievalDoc.h"
#include "notation/TextArea.h"
#include "platform/QtPainter.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <cmath>

namespace corrieval {

namespace {

// A plain text box whose keys all stay with it. Those it has no use for would otherwise travel
// on to the view under it, where letters and Delete are editing commands.
class TextAreaBox : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        QPlainTextEdit::keyPressEvent(event);
        event->accept();
    }
};

} // namespace

TextAreaEditor::TextAreaEditor(CCorrievalView& view) : m_view(view), m_box(new TextAreaBox(view.viewport()))
{
    m_box->hide();
    m_box->setFrameShape(QFrame::NoFrame);
    m_box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_box->setWordWrapMode(QTextOption::WordWrap);
    // The text starts at the content box's corner, as it is drawn on the page.
    m_box->document()->setDocumentMargin(0);
    // The page shows through: the box carries only the text and its caret.
    m_box->viewport()->setAutoFillBackground(false);
    QPalette colours = m_box->palette();
    colours.setColor(QPalette::Base, Qt::transparent);
    m_box->setPalette(colours);
    QObject::connect(m_box, &QPlainTextEdit::textChanged, m_box, [this] { Typed(); });
}

TextAreaEditor::~TextAreaEditor()
{
    if (m_area != nullptr)
        m_area->EditorShown = false;
    // The box reports to this object: it goes first.
    delete m_box;
}

bool TextAreaEditor::Edits(const CScoObj& object) const
{
    return m_area != nullptr && &object == m_area;
}

bool TextAreaEditor::Editable() const
{
    return m_view.Document()->Locked == 0;
}

void TextAreaEditor::FollowSelection()
{
    CTextArea* selected = Editable() ? m_view.Selection().Single<CTextArea>() : nullptr;
    if (selected == m_area)
        return;
    Close();
    if (selected != nullptr)
        Open(*selected);
}

void TextAreaEditor::Open(CTextArea& area)
{
    m_area = &area;
    m_committed = area.Text;
    {
        const QSignalBlocker quiet(m_box);
        m_box->setPlainText(area.Text);
    }
    area.EditorShown = true;
    m_view.InvalidateObject(area);
    FollowView();
    m_box->show();
    m_box->raise();
    m_box->moveCursor(QTextCursor::End);
    m_box->setFocus();
}

void TextAreaEditor::Close()
{
    if (m_area == nullptr)
        return;
    Commit();
    CTextArea& area = *std::exchange(m_area, nullptr);
    area.EditorShown = false;
    m_view.InvalidateObject(area);
    const bool hadFocus = m_box->hasFocus();
    m_box->hide();
    if (hadFocus)
        m_view.setFocus();
}

void TextAreaEditor::Forget()
{
    m_area = nullptr;
    m_box->hide();
}

void TextAreaEditor::Typed()
{
    if (m_area == nullptr)
        return;
    m_area->Text = m_box->toPlainText();
    m_view.Document()->SetModifiedFlag();
}

void TextAreaEditor::Commit()
{
    if (m_area == nullptr || m_area->Text == m_committed)
        return;
    // The step's "before" is the text as the last step left it; the typing is its change.
    const QString typed = m_area->Text;
    m_area->Text = m_committed;
    m_view.History().Record(QObject::tr("Typing"), [&] { m_area->Text = typed; });
    m_committed = typed;
}

void TextAreaEditor::FollowView()
{
    if (m_area == nullptr)
        return;
    if (!Editable()) {
        Close();
        return;
    }
    const ViewTransform t = m_view.Transform();
    const RectF box = m_area->ContentBox();
    const QPointF topLeft = t.DocumentToDevice({box.X, box.Y});
    const QPointF bottomRight = t.DocumentToDevice({box.Right(), box.Bottom()});
    m_box->setGeometry(QRectF(topLeft, bottomRight).toRect());

    // A scroll moves the box and nothing else: the text is laid out again only for a new font.
    const TextFont font = m_area->DrawingFont();
    const QFont zoomed =
        platform::ToQFont(font, static_cast<int>(std::lround(font.Height * t.DpiX * t.Zoom)));
    if (m_box->font() != zoomed)
        m_box->setFont(zoomed);
    const QColor ink = QColor::fromRgba(m_area->TextArgb());
    if (m_box->palette().color(QPalette::Text) != ink) {
        QPalette colours = m_box->palette();
        colours.setColor(QPalette::Text, ink);
        m_box->setPalette(colours);
    }
    const Qt::Alignment alignment =
        platform::ToAlignment(m_area->HorizontalAlignment(), TextAlign::Near) & Qt::AlignHorizontal_Mask;
    QTextOption option = m_box->document()->defaultTextOption();
    if (option.alignment() != alignment) {
        option.setAlignment(alignment);
        m_box->document()->setDefaultTextOption(option);
    }
}

} // namespace corrieval
