#include "shell/ribbon/RibbonPanel.h"

#include "shell/ribbon/ActionMirror.h"
#include "shell/ribbon/RibbonButton.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonIcons.h"
#include "shell/ribbon/RibbonSlider.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace corrieval::ribbon {

namespace {

// Every panel's controls take this height, so that the captions line up across the ribbon.
constexpr int kControlsHeight = 76;
constexpr int kSmallPerColumn = 3;

} // namespace

RibbonPanel::RibbonPanel(const QString& caption, QWidget* parent)
    : QWidget(parent), m_caption(new QLabel(caption.section(QLatin1Char('\n'), 0, 0), this)),
      m_columns(new QHBoxLayout)
{
    setObjectName(QStringLiteral("ribbonPanel"));
    // A panel is as wide as its controls need; the room left over stays at the ribbon's end.
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 3);
    layout->setSpacing(2);
    auto* controls = new QWidget(this);
    controls->setFixedHeight(kControlsHeight);
    controls->setLayout(m_columns);
    m_columns->setContentsMargins(0, 0, 0, 0);
    m_columns->setSpacing(3);
    layout->addWidget(controls);
    m_caption->setObjectName(QStringLiteral("ribbonPanelCaption"));
    m_caption->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_caption);
}

QString RibbonPanel::Caption() const
{
    return m_caption->text();
}

QToolButton* RibbonPanel::AddLargeButton(QAction* action)
{
    ApplyRibbonIcon(action, palette());
    auto* button = new RibbonButton(action, RibbonButton::Kind::Large, this);
    AddColumn(button);
    return button;
}

QToolButton* RibbonPanel::AddSmallButton(QAction* action)
{
    ApplyRibbonIcon(action, palette());
    auto* button = new RibbonButton(action, RibbonButton::Kind::Small, this);
    AddSmall(button);
    return button;
}

void RibbonPanel::AddSeparator()
{
    auto* line = new QFrame(this);
    line->setObjectName(QStringLiteral("ribbonSeparator"));
    line->setFixedWidth(1);
    AddColumn(line);
}

QCheckBox* RibbonPanel::AddCheckBox(QAction* checkable)
{
    auto* box = new QCheckBox(checkable->text().section(QLatin1Char('\n'), 0, 0), this);
    box->setFocusPolicy(Qt::NoFocus);
    MirrorAction(box, checkable, [box, checkable] { box->setChecked(checkable->isChecked()); });
    connect(box, &QCheckBox::clicked, checkable, &QAction::trigger);
    AddSmall(box);
    return box;
}

RibbonGallery* RibbonPanel::AddGallery(QAction* action, int columns)
{
    ApplyRibbonIcon(action, palette());
    auto* gallery = new RibbonGallery(action, columns, this);
    AddColumn(gallery);
    return gallery;
}

RibbonSlider* RibbonPanel::AddSlider(QAction* action, int minimum, int maximum, int value, int width)
{
    auto* slider = new RibbonSlider(minimum, maximum, value, width, this);
    MirrorAction(slider, action);
    connect(slider, &RibbonSlider::ValueChanged, action, &QAction::trigger);
    AddSmall(slider);
    return slider;
}

QLineEdit* RibbonPanel::AddEdit(QAction* action, const QString& label, int width)
{
    auto* edit = new QLineEdit(this);
    edit->setFixedWidth(width);
    connect(edit, &QLineEdit::editingFinished, action, &QAction::trigger);
    AddSmall(Labelled(label, edit, action));
    return edit;
}

QComboBox* RibbonPanel::AddCombo(QAction* action, const QString& label, const QStringList& items, int width)
{
    auto* combo = new QComboBox(this);
    combo->addItems(items);
    combo->setFixedWidth(width);
    combo->setFocusPolicy(Qt::NoFocus);
    connect(combo, &QComboBox::activated, action, &QAction::trigger);
    AddSmall(Labelled(label, combo, action));
    return combo;
}

QLabel* RibbonPanel::AddLabel(const QString& text)
{
    auto* label = new QLabel(text, this);
    AddSmall(label);
    return label;
}

void RibbonPanel::BeginRow()
{
    m_stack = nullptr;
    if (!m_rows) {
        m_rows = new QVBoxLayout;
        m_rows->setSpacing(4);
        m_rows->addStretch();
        m_rows->addStretch();
        m_columns->addLayout(m_rows);
    }
    m_row = new QHBoxLayout;
    m_row->setSpacing(4);
    m_rows->insertLayout(m_rows->count() - 1, m_row);
}

void RibbonPanel::AddColumn(QWidget* control)
{
    m_stack = nullptr;
    m_rows = nullptr;
    m_row = nullptr;
    m_columns->addWidget(control);
}

void RibbonPanel::AddSmall(QWidget* control)
{
    if (m_row) {
        // Aligned, so that a control keeps its own width and the row stays together.
        m_row->addWidget(control, 0, Qt::AlignVCenter);
        return;
    }
    if (!m_stack || m_stack->count() > kSmallPerColumn) {
        m_stack = new QVBoxLayout;
        m_stack->setSpacing(1);
        m_stack->addStretch();
        m_columns->addLayout(m_stack);
    }
    m_stack->insertWidget(m_stack->count() - 1, control, 0, Qt::AlignLeft);
}

QWidget* RibbonPanel::Labelled(const QString& label, QWidget* control, QAction* action)
{
    auto* holder = new QWidget(this);
    holder->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* text = new QLabel(label, holder);
    text->setBuddy(control);
    layout->addWidget(text);
    control->setParent(holder);
    layout->addWidget(control);
    MirrorAction(control, action, [text, action] { text->setEnabled(action->isEnabled()); });
    return holder;
}

} // namespace corrieval::ribbon
