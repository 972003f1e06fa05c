#pragma once

#include <QDialog>

class QButtonGroup;
class QLabel;
class QSpinBox;

namespace corrieval {

class CBarEx;
class CTimeSigCombo;

// "Bar Properties": the lines at the start and end of a bar, and a change of time signature
// there. What it edits lives in the bar's column configuration, so OK changes that bar position
// on every stave of the system.
class CBarProperties : public QDialog {
    Q_OBJECT

public:
    // The choices of both radio groups, in their order.
    enum LineChoice { NoLine = 0, PlainLine = 1, RepeatLine = 2 };
    static constexpr int MinCustom = 1;
    static constexpr int MaxCustom = 32;

    CBarProperties(CBarEx& bar, QWidget* parent = nullptr);

    // Writes what the dialog holds to the bar's configuration.
    void Apply();

    // Shows the dialog over `parent`; true when the bar was changed by OK.
    static bool Edit(CBarEx& bar, QWidget* parent);

private:
    void ShowCustom();

    CBarEx& m_bar;
    QButtonGroup* m_start;
    QButtonGroup* m_end;
    CTimeSigCombo* m_timeSig;
    QLabel* m_customLabel;
    QSpinBox* m_beats;
    QSpinBox* m_unit;
};

} // namespace corrieval
