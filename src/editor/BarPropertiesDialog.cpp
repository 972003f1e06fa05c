#include "editor/BarPropertiesDialog.h"

#include "editor/TimeSigCombo.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace corrieval {

namespace {

struct LineOption {
    const char* Caption;
    const char* Tip;
};

constexpr QSize kPictureSize(32, 24);

// A piece of stave with the lines a choice draws at the start of a bar, mirrored for its end.
QIcon LinePicture(int choice, bool end, const QPalette& palette)
{
    QPixmap pixmap(kPictureSize * 2);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QColor ink = palette.color(QPalette::WindowText);
    QColor staveLines = ink;
    staveLines.setAlphaF(0.45f);
    // Half-pixel places keep the one-pixel lines sharp.
    constexpr qreal kTop = 4.5;
    constexpr qreal kGap = 4;
    constexpr qreal kBottom = kTop + 4 * kGap;
    p.setPen(QPen(staveLines, 1));
    for (int line = 0; line < 5; ++line)
        p.drawLine(QPointF(2, kTop + line * kGap), QPointF(kPictureSize.width() - 2, kTop + line * kGap));
    if (end) {
        p.translate(kPictureSize.width(), 0);
        p.scale(-1, 1);
    }
    constexpr qreal x = 11.5;
    p.setPen(QPen(ink, 1.2));
    if (choice == CBarProperties::NoLine) {
        p.drawLine(QPointF(x, kTop), QPointF(x, kBottom));
        return QIcon(pixmap);
    }
    p.fillRect(QRectF(x - 1.5, kTop, 3, kBottom - kTop), ink);
    p.drawLine(QPointF(x + 4, kTop), QPointF(x + 4, kBottom));
    if (choice == CBarProperties::RepeatLine) {
        p.setPen(Qt::NoPen);
        p.setBrush(ink);
        for (qreal y : {kTop + 1.5 * kGap, kTop + 2.5 * kGap})
            p.drawEllipse(QPointF(x + 8, y), 1.4, 1.4);
    }
    return QIcon(pixmap);
}

// A group box of three radio buttons, one per LineChoice, registered in `choices` by that id.
QGroupBox* LineBox(const QString& title, const LineOption (&options)[3], bool end, QButtonGroup* choices)
{
    auto* box = new QGroupBox(title);
    auto* column = new QVBoxLayout(box);
    for (int id = 0; id < 3; ++id) {
        auto* button = new QRadioButton(QString::fromLatin1(options[id].Caption));
        button->setToolTip(QString::fromLatin1(options[id].Tip));
        button->setIconSize(kPictureSize);
        button->setIcon(LinePicture(id, end, box->palette()));
        choices->addButton(button, id);
        column->addWidget(button);
    }
    return box;
}

QSpinBox* CustomBox(std::int32_t value, const QString& tip)
{
    auto* box = new QSpinBox;
    box->setRange(CBarProperties::MinCustom, CBarProperties::MaxCustom);
    box->setValue(value);
    box->setToolTip(tip);
    return box;
}

// The choice a pair of flags shows: the plain line wins if a file ever set both.
int ChoiceOf(bool plain, bool repeat)
{
    if (plain)
        return CBarProperties::PlainLine;
    return repeat ? CBarProperties::RepeatLine : CBarProperties::NoLine;
}

// The two lines exclude each other: setting one clears the other.
void SetFlags(int choice, bool& plain, bool& repeat)
{
    plain = choice == CBarProperties::PlainLine;
    repeat = choice == CBarProperties::RepeatLine;
}

} // namespace

CBarProperties::CBarProperties(CBarEx& bar, QWidget* parent)
    : QDialog(parent), m_bar(bar), m_start(new QButtonGroup(this)), m_end(new QButtonGroup(this)),
      m_timeSig(new CTimeSigCombo), m_customLabel(new QLabel(QStringLiteral("C&ustom:"))),
      m_beats(CustomBox(bar.Config->TimeSig.CustomBeats, QStringLiteral("Beats in the bar"))),
      m_unit(CustomBox(bar.Config->TimeSig.CustomUnit, QStringLiteral("The note that counts as one beat")))
{
    setWindowTitle(QStringLiteral("Bar Properties"));
    const CBarConfig& config = *bar.Config;

    static constexpr LineOption kStartOptions[] = {
        {"None", "A plain bar line, or none at the start of a stave"},
        {"Start", "Heavy and light lines, no dots"},
        {"Repeat", "Heavy and light lines and two dots: the music from here is played twice"},
    };
    static constexpr LineOption kEndOptions[] = {
        {"None", "A plain bar line"},
        {"End", "Light and heavy lines, no dots"},
        {"Repeat", "Two dots, light and heavy lines: back to the start of the repeat"},
    };
    auto* lines = new QHBoxLayout;
    lines->addWidget(LineBox(QStringLiteral("Start of bar"), kStartOptions, false, m_start));
    lines->addWidget(LineBox(QStringLiteral("End of bar"), kEndOptions, true, m_end));
    m_start->button(ChoiceOf(config.StartBarLine, config.StartRepeat))->setChecked(true);
    m_end->button(ChoiceOf(config.EndBarLine, config.EndRepeat))->setChecked(true);

    m_timeSig->setToolTip(QStringLiteral("\"None\" keeps the time signature of the bars before"));
    m_timeSig->SetType(config.TimeSig.Type);
    m_customLabel->setBuddy(m_beats);
    auto* custom = new QHBoxLayout;
    custom->addWidget(m_customLabel);
    custom->addWidget(m_beats);
    custom->addWidget(new QLabel(QStringLiteral("/")));
    custom->addWidget(m_unit);
    custom->addStretch();
    auto* timeSig = new QGroupBox(QStringLiteral("Change Time Signature"));
    auto* timeSigColumn = new QVBoxLayout(timeSig);
    timeSigColumn->addWidget(m_timeSig);
    timeSigColumn->addLayout(custom);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(lines);
    layout->addWidget(timeSig);
    layout->addWidget(buttons);

    ShowCustom();
    connect(m_timeSig, &QComboBox::currentIndexChanged, this, &CBarProperties::ShowCustom);
}

void CBarProperties::ShowCustom()
{
    const bool custom = m_timeSig->IsCustom();
    for (QWidget* control : std::initializer_list<QWidget*>{m_customLabel, m_beats, m_unit})
        control->setEnabled(custom);
}

void CBarProperties::Apply()
{
    CBarConfig& config = *m_bar.Config;
    SetFlags(m_start->checkedId(), config.StartBarLine, config.StartRepeat);
    SetFlags(m_end->checkedId(), config.EndBarLine, config.EndRepeat);
    // The custom numbers first: setting the type draws a custom signature's digits from them.
    config.TimeSig.CustomBeats = m_beats->value();
    config.TimeSig.CustomUnit = m_unit->value();
    // A type no list item shows (from an odd file) stays as it is unless the piper picks one.
    if (m_timeSig->Type() >= 0)
        config.TimeSig.SetType(m_timeSig->Type());
}

bool CBarProperties::Edit(CBarEx& bar, QWidget* parent)
{
    if (bar.Config == nullptr)
        return false;
    CBarProperties dialog(bar, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    dialog.Apply();
    return true;
}

} // namespace corrieval
