#include "editor/StaveAreaPropertiesDialog.h"

#include "editor/StaveAreaShape.h"
#include "editor/TimeSigCombo.h"
#include "model/Messages.h"
#include "model/Stave.h"
#include "model/StaveArea.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>

namespace corrieval {

namespace {

constexpr int kColumnWidth = 70;
constexpr int kMaxCustomNumber = 32;
constexpr int kMaxSpacing = 100;
// The staves are filled a little see-through, so that the page shows faintly behind them.
constexpr std::uint32_t kBackgroundAlpha = 0x64000000;
constexpr std::uint32_t kRgbMask = 0x00FFFFFF;
constexpr int kBarsColumn = 1;
constexpr int kClefColumn = 1;

QString ClefName(std::int32_t kind)
{
    switch (kind) {
    case CClef::Treble:
        return QStringLiteral("Treble");
    case CClef::Bass:
        return QStringLiteral("Bass");
    default:
        return QStringLiteral("None");
    }
}

// The pipes play from the treble clef, the drums from the bass.
QString InstrumentName(std::int32_t kind)
{
    switch (kind) {
    case CClef::Treble:
        return QStringLiteral("Pipes");
    case CClef::Bass:
        return QStringLiteral("Drums");
    default:
        return {};
    }
}

bool Confirmed(const QString& question) { return ShowMessage(question, MessageKind::OkCancel) == MessageAnswer::Ok; }

QTreeWidget* MakeList(const QStringList& columns)
{
    auto* list = new QTreeWidget;
    list->setColumnCount(static_cast<int>(columns.size()));
    list->setHeaderLabels(columns);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    for (int column = 0; column < list->columnCount(); ++column)
        list->setColumnWidth(column, kColumnWidth);
    list->header()->setStretchLastSection(true);
    list->setMinimumWidth(kColumnWidth * list->columnCount() + 2 * list->frameWidth() + 4);
    return list;
}

// The row after `item` is the one to choose when `item` goes: the same place, or the last row.
void RemoveRow(QTreeWidget& list, QTreeWidgetItem* item)
{
    const int index = list.indexOfTopLevelItem(item);
    delete list.takeTopLevelItem(index);
    const int rows = list.topLevelItemCount();
    if (rows > 0)
        list.setCurrentItem(list.topLevelItem(std::min(index, rows - 1)));
}

void Renumber(QTreeWidget& list)
{
    for (int row = 0; row < list.topLevelItemCount(); ++row)
        list.topLevelItem(row)->setData(0, Qt::DisplayRole, row + 1);
}

QTreeWidgetItem* LineRow(int bars)
{
    auto* item = new QTreeWidgetItem;
    item->setData(kBarsColumn, Qt::DisplayRole, bars);
    return item;
}

QTreeWidgetItem* PartRow(std::int32_t clef)
{
    auto* item = new QTreeWidgetItem;
    item->setText(kClefColumn, ClefName(clef));
    item->setData(kClefColumn, Qt::UserRole, clef);
    item->setText(kClefColumn + 1, InstrumentName(clef));
    return item;
}

QPushButton* Button(const QString& caption, const QString& tip)
{
    auto* button = new QPushButton(caption);
    button->setToolTip(tip);
    return button;
}

QSpinBox* NumberBox(int low, int high, int value)
{
    auto* box = new QSpinBox;
    box->setRange(low, high);
    box->setValue(value);
    return box;
}

} // namespace

CStaveAreaProperties::CStaveAreaProperties(CStaveArea& area, QWidget* parent)
    : QDialog(parent),
      m_area(area),
      m_automaticColour(area.Background & kRgbMask),
      m_colour(m_automaticColour)
{
    setWindowTitle(QStringLiteral("Music Properties"));

    auto* lists = new QHBoxLayout;
    lists->addWidget(MakeLinesBox());
    lists->addWidget(MakePartsBox());

    auto* settings = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(MakeTimeSigBox());
    left->addWidget(MakeSpacingAndColourBox());
    settings->addLayout(left);
    settings->addWidget(MakeDisplayBox());

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(lists, 1);
    layout->addLayout(settings);
    layout->addWidget(buttons);

    FillLines();
    FillParts();
}

QWidget* CStaveAreaProperties::MakeLinesBox()
{
    m_lines = MakeList({QStringLiteral("Line"), QStringLiteral("Bars")});
    m_lines->setObjectName(QStringLiteral("lines"));
    m_lines->setToolTip(QStringLiteral("The lines of staves in this music area, top to bottom"));
    m_bars = NumberBox(1, MaxSpinBars, 1);
    m_bars->setObjectName(QStringLiteral("bars"));
    m_bars->setToolTip(QStringLiteral("Bars in the chosen line, applied on OK"));
    m_insertLine = Button(QStringLiteral("Insert after"), QStringLiteral("Adds a line of four bars after the chosen one"));
    m_insertLine->setObjectName(QStringLiteral("insertLine"));
    m_removeLine = Button(QStringLiteral("Remove"), QStringLiteral("Removes the chosen line with its music"));
    m_removeLine->setObjectName(QStringLiteral("removeLine"));

    connect(m_lines, &QTreeWidget::itemSelectionChanged, this, &CStaveAreaProperties::LineChosen);
    connect(m_bars, &QSpinBox::valueChanged, this, &CStaveAreaProperties::BarsChanged);
    connect(m_insertLine, &QPushButton::clicked, this, &CStaveAreaProperties::InsertLine);
    connect(m_removeLine, &QPushButton::clicked, this, &CStaveAreaProperties::RemoveLine);

    auto* barsRow = new QHBoxLayout;
    auto* barsLabel = new QLabel(QStringLiteral("&Bars:"));
    barsLabel->setBuddy(m_bars);
    barsRow->addWidget(barsLabel);
    barsRow->addWidget(m_bars);
    barsRow->addStretch(1);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addWidget(m_insertLine);
    buttonRow->addWidget(m_removeLine);

    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(new QLabel(QStringLiteral("Staves:")));
    column->addWidget(m_lines, 1);
    column->addLayout(barsRow);
    column->addLayout(buttonRow);
    return box;
}

QWidget* CStaveAreaProperties::MakePartsBox()
{
    m_parts = MakeList({QStringLiteral("Part"), QStringLiteral("Clef"), QStringLiteral("Instrument")});
    m_parts->setObjectName(QStringLiteral("parts"));
    m_parts->setToolTip(QStringLiteral("The parts played together on each line, one stave each"));
    m_insertPart = Button(QStringLiteral("Insert after"), QStringLiteral("Adds a pipe part after the chosen one"));
    m_insertPart->setObjectName(QStringLiteral("insertPart"));
    m_removePart = Button(QStringLiteral("Remove"), QStringLiteral("Removes the chosen part with its music"));
    m_removePart->setObjectName(QStringLiteral("removePart"));

    connect(m_parts, &QTreeWidget::itemSelectionChanged, this, &CStaveAreaProperties::PartChosen);
    connect(m_insertPart, &QPushButton::clicked, this, &CStaveAreaProperties::InsertPart);
    connect(m_removePart, &QPushButton::clicked, this, &CStaveAreaProperties::RemovePart);

    auto* buttonRow = new QHBoxLayout;
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_insertPart);
    buttonRow->addWidget(m_removePart);

    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(new QLabel(QStringLiteral("Parts:")));
    column->addWidget(m_parts, 1);
    column->addSpacing(m_bars->sizeHint().height() + column->spacing());
    column->addLayout(buttonRow);
    return box;
}

QWidget* CStaveAreaProperties::MakeTimeSigBox()
{
    const CTimeSig& sig = m_area.InitialTimeSig;
    m_timeSig = new CTimeSigCombo;
    m_timeSig->setObjectName(QStringLiteral("timeSig"));
    m_timeSig->Fill(sig);
    m_customBeats = NumberBox(1, kMaxCustomNumber, sig.CustomBeats);
    m_customBeats->setObjectName(QStringLiteral("customBeats"));
    m_customBeats->setToolTip(QStringLiteral("Beats in a bar"));
    m_customUnit = NumberBox(1, kMaxCustomNumber, sig.CustomUnit);
    m_customUnit->setObjectName(QStringLiteral("customUnit"));
    m_customUnit->setToolTip(QStringLiteral("The note that takes a beat: 4 a crotchet, 8 a quaver"));
    connect(m_timeSig, &QComboBox::currentIndexChanged, this, &CStaveAreaProperties::TimeSigChosen);

    auto* custom = new QHBoxLayout;
    custom->addWidget(m_customBeats);
    custom->addWidget(new QLabel(QStringLiteral("/")));
    custom->addWidget(m_customUnit);
    custom->addStretch(1);

    auto* box = new QWidget;
    auto* form = new QFormLayout(box);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(QStringLiteral("Initial time signature:"), m_timeSig);
    form->addRow(QStringLiteral("Custom time signature:"), custom);
    m_customLabel = static_cast<QLabel*>(form->labelForField(custom));
    TimeSigChosen();
    return box;
}

QWidget* CStaveAreaProperties::MakeDisplayBox()
{
    m_showKeySig = new QCheckBox(QStringLiteral("Key signature"));
    m_showKeySig->setObjectName(QStringLiteral("showKeySig"));
    m_showKeySig->setChecked(m_area.ShowKeySig);
    m_showTimeSig = new QCheckBox(QStringLiteral("Time signature"));
    m_showTimeSig->setObjectName(QStringLiteral("showTimeSig"));
    m_showTimeSig->setToolTip(QStringLiteral("Shown at the head of the first line"));
    m_showTimeSig->setChecked(m_area.ShowTimeSig);
    m_showBarLines = new QCheckBox(QStringLiteral("Mid-stave bar lines"));
    m_showBarLines->setObjectName(QStringLiteral("showBarLines"));
    m_showBarLines->setChecked(m_area.ShowBarLines);

    auto* box = new QGroupBox(QStringLiteral("Display options: "));
    auto* column = new QVBoxLayout(box);
    column->addWidget(m_showKeySig);
    column->addWidget(m_showTimeSig);
    column->addWidget(m_showBarLines);
    column->addStretch(1);
    return box;
}

QWidget* CStaveAreaProperties::MakeSpacingAndColourBox()
{
    m_spacing = NumberBox(0, kMaxSpacing, m_area.StaveSpacing);
    m_spacing->setObjectName(QStringLiteral("spacing"));
    m_spacing->setSuffix(QStringLiteral(" %"));
    m_spacing->setToolTip(QStringLiteral("Room above and below each line of staves"));

    m_colourButton = new QToolButton;
    m_colourButton->setObjectName(QStringLiteral("colour"));
    m_colourButton->setToolTip(QStringLiteral("The colour behind the staves"));
    m_colourButton->setPopupMode(QToolButton::MenuButtonPopup);
    m_colourButton->setIconSize(QSize(32, 16));
    auto* menu = new QMenu(m_colourButton);
    menu->addAction(QStringLiteral("Automatic"), this, [this] { ShowColour(m_automaticColour); });
    menu->addAction(QStringLiteral("Other"), this, &CStaveAreaProperties::ChooseOtherColour);
    m_colourButton->setMenu(menu);
    connect(m_colourButton, &QToolButton::clicked, this, &CStaveAreaProperties::ChooseOtherColour);
    m_colourText = new QLabel;
    m_colourText->setObjectName(QStringLiteral("colourText"));
    ShowColour(m_colour);

    auto* colourRow = new QHBoxLayout;
    colourRow->addWidget(m_colourButton);
    colourRow->addWidget(m_colourText, 1);

    auto* box = new QWidget;
    auto* form = new QFormLayout(box);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(QStringLiteral("Set stave spacing:"), m_spacing);
    form->addRow(colourRow);
    return box;
}

void CStaveAreaProperties::FillLines()
{
    for (const auto& group : m_area.Children())
        m_lines->addTopLevelItem(LineRow(static_cast<int>(static_cast<const CStaveGroup&>(*group).BarConfigs.size())));
    Renumber(*m_lines);
    if (m_lines->topLevelItemCount() > 0)
        m_lines->setCurrentItem(m_lines->topLevelItem(0));
    LineChosen();
}

void CStaveAreaProperties::FillParts()
{
    const auto* first = m_area.ChildCount() > 0 ? static_cast<const CStaveGroup*>(m_area.ChildAt(0)) : nullptr;
    const int parts = std::max(m_area.PartCount, 1);
    for (int part = 0; part < parts; ++part) {
        const bool held = first != nullptr && static_cast<std::size_t>(part) < first->ChildCount();
        // A part the staves do not hold yet is made treble on OK, as every new stave is.
        const std::int32_t clef = held ? static_cast<const CStave&>(*first->ChildAt(part)).Clef.Type : CClef::Treble;
        m_parts->addTopLevelItem(PartRow(clef));
    }
    Renumber(*m_parts);
    m_parts->setCurrentItem(m_parts->topLevelItem(0));
    PartChosen();
}

void CStaveAreaProperties::LineChosen()
{
    const int rows = m_lines->topLevelItemCount();
    QTreeWidgetItem* line = m_lines->selectedItems().size() == 1 ? m_lines->selectedItems().front() : nullptr;
    m_insertLine->setEnabled(line != nullptr && rows < MaxLines);
    m_removeLine->setEnabled(line != nullptr && rows >= 2);
    m_bars->setEnabled(line != nullptr);
    if (line == nullptr)
        return;
    const int bars = line->data(kBarsColumn, Qt::DisplayRole).toInt();
    const QSignalBlocker quiet(m_bars);
    m_bars->setMaximum(std::max(bars, MaxSpinBars));
    m_bars->setValue(bars);
}

void CStaveAreaProperties::PartChosen()
{
    const int rows = m_parts->topLevelItemCount();
    const bool one = m_parts->selectedItems().size() == 1;
    m_insertPart->setEnabled(one && rows < MaxParts);
    m_removePart->setEnabled(one && rows >= 2);
}

void CStaveAreaProperties::BarsChanged(int bars)
{
    if (QTreeWidgetItem* line = m_lines->currentItem())
        line->setData(kBarsColumn, Qt::DisplayRole, bars);
}

void CStaveAreaProperties::TimeSigChosen()
{
    const bool custom = m_timeSig->IsCustom();
    m_customBeats->setEnabled(custom);
    m_customUnit->setEnabled(custom);
    m_customLabel->setEnabled(custom);
}

void CStaveAreaProperties::ShowColour(std::uint32_t rgb)
{
    m_colour = rgb & kRgbMask;
    const QColor colour = QColor::fromRgb(m_colour);
    QPixmap swatch(m_colourButton->iconSize());
    swatch.fill(colour);
    QPainter(&swatch).drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    m_colourButton->setIcon(QIcon(swatch));
    m_colourText->setText(QStringLiteral("Stave background:\n%1 : %2 : %3").arg(colour.red()).arg(colour.green()).arg(colour.blue()));
}

void CStaveAreaProperties::ChooseOtherColour()
{
    const QColor chosen = QColorDialog::getColor(QColor::fromRgb(m_colour), this);
    if (chosen.isValid())
        ShowColour(chosen.rgb());
}

void CStaveAreaProperties::InsertLine()
{
    QTreeWidgetItem* line = m_lines->currentItem();
    if (line == nullptr || !Confirmed(QStringLiteral("Are you sure? Inserting staves cannot be cancelled.")))
        return;
    const int after = m_lines->indexOfTopLevelItem(line);
    m_lines->insertTopLevelItem(after + 1, LineRow(NewLineBars));
    Renumber(*m_lines);
    corrieval::InsertLine(m_area, static_cast<std::size_t>(after), static_cast<std::size_t>(m_lines->topLevelItemCount()),
                          static_cast<std::size_t>(m_parts->topLevelItemCount()), m_spacing->value());
    LineChosen();
}

void CStaveAreaProperties::RemoveLine()
{
    QTreeWidgetItem* line = m_lines->currentItem();
    if (line == nullptr || !Confirmed(QStringLiteral("Are you sure? Deleting staves cannot be cancelled.")))
        return;
    corrieval::RemoveLine(m_area, static_cast<std::size_t>(m_lines->indexOfTopLevelItem(line)));
    RemoveRow(*m_lines, line);
    Renumber(*m_lines);
    LineChosen();
}

void CStaveAreaProperties::InsertPart()
{
    QTreeWidgetItem* part = m_parts->currentItem();
    if (part == nullptr || m_parts->topLevelItemCount() >= MaxParts ||
        !Confirmed(QStringLiteral("Are you sure? Inserting parts cannot be cancelled.")))
        return;
    const int after = m_parts->indexOfTopLevelItem(part);
    m_parts->insertTopLevelItem(after + 1, PartRow(CClef::Treble));
    Renumber(*m_parts);
    corrieval::InsertPart(m_area, static_cast<std::size_t>(after), static_cast<std::size_t>(m_parts->topLevelItemCount()),
                          BarsPerLine(), m_spacing->value());
    PartChosen();
}

void CStaveAreaProperties::RemovePart()
{
    QTreeWidgetItem* part = m_parts->currentItem();
    if (part == nullptr || !Confirmed(QStringLiteral("Are you sure? Deleting parts cannot be cancelled.")))
        return;
    const int index = m_parts->indexOfTopLevelItem(part);
    RemoveRow(*m_parts, part);
    Renumber(*m_parts);
    corrieval::RemovePart(m_area, static_cast<std::size_t>(index), static_cast<std::size_t>(m_parts->topLevelItemCount()));
    PartChosen();
}

std::vector<int> CStaveAreaProperties::BarsPerLine() const
{
    std::vector<int> bars;
    for (int row = 0; row < m_lines->topLevelItemCount(); ++row)
        bars.push_back(m_lines->topLevelItem(row)->data(kBarsColumn, Qt::DisplayRole).toInt());
    return bars;
}

void CStaveAreaProperties::accept()
{
    Apply();
    QDialog::accept();
}

void CStaveAreaProperties::Apply()
{
    m_area.Background = kBackgroundAlpha | m_colour;
    m_area.ShowKeySig = m_showKeySig->isChecked();
    m_area.ShowTimeSig = m_showTimeSig->isChecked();
    m_area.ShowBarLines = m_showBarLines->isChecked();
    m_area.SetGroupCount(static_cast<std::size_t>(m_lines->topLevelItemCount()));
    m_area.SetPartCount(m_parts->topLevelItemCount());
    SetBarsPerLine(m_area, BarsPerLine());
    for (int part = 0; part < m_parts->topLevelItemCount(); ++part)
        m_area.SetClef(static_cast<std::size_t>(part), m_parts->topLevelItem(part)->data(kClefColumn, Qt::UserRole).toInt());
    m_area.InitialTimeSig.CustomBeats = m_customBeats->value();
    m_area.InitialTimeSig.CustomUnit = m_customUnit->value();
    m_area.InitialTimeSig.SetType(m_timeSig->Type());
    ApplySpacing(m_area, m_spacing->value());
}

bool CStaveAreaProperties::Edit(CStaveArea& area, QWidget* parent)
{
    CStaveAreaProperties dialog(area, parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace corrieval
