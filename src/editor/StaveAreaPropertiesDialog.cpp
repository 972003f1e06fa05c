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
#include <QGridLayout>
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
#include <iterator>

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

// The clefs by kind, with the instrument that plays from each: the pipes from the treble, the
// drums from the bass.
struct ClefNames {
    const char* Clef;
    const char* Instrument;
};
constexpr ClefNames kClefs[] = {{"None", ""}, {"Treble", "Pipes"}, {"Bass", "Drums"}};

ClefNames NamesOf(std::int32_t kind)
{
    return kind >= 0 && kind < std::ssize(kClefs) ? kClefs[kind] : kClefs[CClef::None];
}

bool Confirmed(const QString& question)
{
    return ShowMessage(question, MessageKind::OkCancel) == MessageAnswer::Ok;
}

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
    item->setText(kClefColumn, QString::fromLatin1(NamesOf(clef).Clef));
    item->setData(kClefColumn, Qt::UserRole, clef);
    item->setText(kClefColumn + 1, QString::fromLatin1(NamesOf(clef).Instrument));
    return item;
}

// Tests find the controls by their names.
template <class Widget> Widget* Named(Widget* widget, const char* name, const QString& tip)
{
    widget->setObjectName(QString::fromLatin1(name));
    widget->setToolTip(tip);
    return widget;
}

QHBoxLayout* ButtonRow(QPushButton* insert, QPushButton* remove)
{
    auto* row = new QHBoxLayout;
    row->addWidget(insert);
    row->addWidget(remove);
    return row;
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
    : QDialog(parent), m_area(area), m_automaticColour(area.Background & kRgbMask),
      m_colour(m_automaticColour)
{
    setWindowTitle(QStringLiteral("Music Properties"));

    auto* settings = new QHBoxLayout;
    settings->addWidget(MakeSettingsForm());
    settings->addWidget(MakeDisplayBox());

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeLists(), 1);
    layout->addLayout(settings);
    layout->addWidget(buttons);

    FillLines();
    FillParts();
}

QLayout* CStaveAreaProperties::MakeLists()
{
    m_lines = Named(MakeList({QStringLiteral("Line"), QStringLiteral("Bars")}), "lines",
                    QStringLiteral("The lines of staves in this music area, top to bottom"));
    m_bars =
        Named(NumberBox(1, MaxSpinBars, 1), "bars", QStringLiteral("Bars in the chosen line, applied on OK"));
    m_insertLine = Named(new QPushButton(QStringLiteral("Insert after")), "insertLine",
                         QStringLiteral("Adds a line of four bars after the chosen one"));
    m_removeLine = Named(new QPushButton(QStringLiteral("Remove")), "removeLine",
                         QStringLiteral("Removes the chosen line with its music"));
    m_parts = Named(MakeList({QStringLiteral("Part"), QStringLiteral("Clef"), QStringLiteral("Instrument")}),
                    "parts", QStringLiteral("The parts played together on each line, one stave each"));
    m_insertPart = Named(new QPushButton(QStringLiteral("Insert after")), "insertPart",
                         QStringLiteral("Adds a pipe part after the chosen one"));
    m_removePart = Named(new QPushButton(QStringLiteral("Remove")), "removePart",
                         QStringLiteral("Removes the chosen part with its music"));

    connect(m_lines, &QTreeWidget::itemSelectionChanged, this, &CStaveAreaProperties::LineChosen);
    connect(m_bars, &QSpinBox::valueChanged, this, &CStaveAreaProperties::BarsChanged);
    connect(m_insertLine, &QPushButton::clicked, this, &CStaveAreaProperties::InsertLine);
    connect(m_removeLine, &QPushButton::clicked, this, &CStaveAreaProperties::RemoveLine);
    connect(m_parts, &QTreeWidget::itemSelectionChanged, this, &CStaveAreaProperties::PartChosen);
    connect(m_insertPart, &QPushButton::clicked, this, &CStaveAreaProperties::InsertPart);
    connect(m_removePart, &QPushButton::clicked, this, &CStaveAreaProperties::RemovePart);

    auto* barsRow = new QHBoxLayout;
    auto* barsLabel = new QLabel(QStringLiteral("&Bars:"));
    barsLabel->setBuddy(m_bars);
    barsRow->addWidget(barsLabel);
    barsRow->addWidget(m_bars);
    barsRow->addStretch(1);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("Staves:")), 0, 0);
    grid->addWidget(new QLabel(QStringLiteral("Parts:")), 0, 1);
    grid->addWidget(m_lines, 1, 0);
    grid->addWidget(m_parts, 1, 1);
    grid->addLayout(barsRow, 2, 0);
    grid->addLayout(ButtonRow(m_insertLine, m_removeLine), 3, 0);
    grid->addLayout(ButtonRow(m_insertPart, m_removePart), 3, 1);
    grid->setRowStretch(1, 1);
    return grid;
}

QWidget* CStaveAreaProperties::MakeSettingsForm()
{
    const CTimeSig& sig = m_area.InitialTimeSig;
    m_timeSig = Named(new CTimeSigCombo, "timeSig", QStringLiteral("The time signature the music starts in"));
    m_timeSig->SetType(sig.Type);
    m_customBeats = Named(NumberBox(1, kMaxCustomNumber, sig.CustomBeats), "customBeats",
                          QStringLiteral("Beats in a bar"));
    m_customUnit = Named(NumberBox(1, kMaxCustomNumber, sig.CustomUnit), "customUnit",
                         QStringLiteral("The note that takes a beat: 4 a crotchet, 8 a quaver"));
    connect(m_timeSig, &QComboBox::currentIndexChanged, this, &CStaveAreaProperties::TimeSigChosen);
    auto* custom = new QHBoxLayout;
    custom->addWidget(m_customBeats);
    custom->addWidget(new QLabel(QStringLiteral("/")));
    custom->addWidget(m_customUnit);
    custom->addStretch(1);

    m_spacing = Named(NumberBox(0, kMaxSpacing, m_area.StaveSpacing), "spacing",
                      QStringLiteral("Room above and below each line of staves"));
    m_spacing->setSuffix(QStringLiteral(" %"));

    m_colourButton = Named(new QToolButton, "colour", QStringLiteral("The colour behind the staves"));
    m_colourButton->setPopupMode(QToolButton::MenuButtonPopup);
    m_colourButton->setIconSize(QSize(32, 16));
    auto* menu = new QMenu(m_colourButton);
    menu->addAction(QStringLiteral("Automatic"), this, [this] { ShowColour(m_automaticColour); });
    menu->addAction(QStringLiteral("Other"), this, &CStaveAreaProperties::ChooseOtherColour);
    m_colourButton->setMenu(menu);
    connect(m_colourButton, &QToolButton::clicked, this, &CStaveAreaProperties::ChooseOtherColour);
    m_colourText = new QLabel;
    ShowColour(m_colour);
    auto* colourRow = new QHBoxLayout;
    colourRow->addWidget(m_colourButton);
    colourRow->addWidget(m_colourText, 1);

    auto* box = new QWidget;
    auto* form = new QFormLayout(box);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(QStringLiteral("Initial time signature:"), m_timeSig);
    form->addRow(QStringLiteral("Custom time signature:"), custom);
    m_customLabel = static_cast<QLabel*>(form->labelForField(custom));
    form->addRow(QStringLiteral("Set stave spacing:"), m_spacing);
    form->addRow(colourRow);
    TimeSigChosen();
    return box;
}

QWidget* CStaveAreaProperties::MakeDisplayBox()
{
    m_showKeySig = Named(new QCheckBox(QStringLiteral("Key signature")), "showKeySig",
                         QStringLiteral("The two sharps after the clef of every stave"));
    m_showTimeSig = Named(new QCheckBox(QStringLiteral("Time signature")), "showTimeSig",
                          QStringLiteral("Shown at the head of the first line"));
    m_showBarLines = Named(new QCheckBox(QStringLiteral("Mid-stave bar lines")), "showBarLines",
                           QStringLiteral("The lines between the bars of a stave"));
    m_showKeySig->setChecked(m_area.ShowKeySig);
    m_showTimeSig->setChecked(m_area.ShowTimeSig);
    m_showBarLines->setChecked(m_area.ShowBarLines);

    auto* box = new QGroupBox(QStringLiteral("Display options: "));
    auto* column = new QVBoxLayout(box);
    column->addWidget(m_showKeySig);
    column->addWidget(m_showTimeSig);
    column->addWidget(m_showBarLines);
    column->addStretch(1);
    return box;
}

void CStaveAreaProperties::FillLines()
{
    for (const auto& group : m_area.Children())
        m_lines->addTopLevelItem(
            LineRow(static_cast<int>(static_cast<const CStaveGroup&>(*group).BarConfigs.size())));
    Renumber(*m_lines);
    if (m_lines->topLevelItemCount() > 0)
        m_lines->setCurrentItem(m_lines->topLevelItem(0));
    LineChosen();
}

void CStaveAreaProperties::FillParts()
{
    const auto* first =
        m_area.ChildCount() > 0 ? static_cast<const CStaveGroup*>(m_area.ChildAt(0)) : nullptr;
    const int parts = std::max(m_area.PartCount, 1);
    for (int part = 0; part < parts; ++part) {
        const bool held = first != nullptr && static_cast<std::size_t>(part) < first->ChildCount();
        // A part the staves do not hold yet is made treble on OK, as every new stave is.
        const std::int32_t clef =
            held ? static_cast<const CStave&>(*first->ChildAt(part)).Clef.Type : CClef::Treble;
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
    m_colourText->setText(QStringLiteral("Stave background:\n%1 : %2 : %3")
                              .arg(colour.red())
                              .arg(colour.green())
                              .arg(colour.blue()));
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
    corrieval::InsertLine(m_area, static_cast<std::size_t>(after),
                          static_cast<std::size_t>(m_lines->topLevelItemCount()),
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
    corrieval::InsertPart(m_area, static_cast<std::size_t>(after),
                          static_cast<std::size_t>(m_parts->topLevelItemCount()), BarsPerLine(),
                          m_spacing->value());
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
    corrieval::RemovePart(m_area, static_cast<std::size_t>(index),
                          static_cast<std::size_t>(m_parts->topLevelItemCount()));
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
        m_area.SetClef(static_cast<std::size_t>(part),
                       m_parts->topLevelItem(part)->data(kClefColumn, Qt::UserRole).toInt());
    m_area.InitialTimeSig.CustomBeats = m_customBeats->value();
    m_area.InitialTimeSig.CustomUnit = m_customUnit->value();
    // A type the list does not know (from a damaged file) stays until another is chosen.
    if (m_timeSig->Type() >= CTimeSig::None)
        m_area.InitialTimeSig.SetType(m_timeSig->Type());
    ApplySpacing(m_area, m_spacing->value());
}

bool CStaveAreaProperties::Edit(CStaveArea& area, QWidget* parent)
{
    CStaveAreaProperties dialog(area, parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace corrieval
