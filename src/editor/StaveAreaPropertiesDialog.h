#pragma once

#include <QDialog>
#include <cstdint>
#include <vector>

class QCheckBox;
class QLabel;
class QLayout;
class QPushButton;
class QSpinBox;
class QToolButton;
class QTreeWidget;

namespace corrieval {

class CStaveArea;
class CTimeSigCombo;

// "Music Properties": the shape of a music area (its lines, the bars of each line, its parts and
// their clefs), its initial time signature, what its staves show, the room around each line and
// the colour behind the staves.
//
// Inserting or removing a line or a part changes the area at once, after a question, and stays
// done when the dialog is cancelled; everything else waits for OK. The Properties command wraps
// the whole dialog in one undo step, so Undo takes back those insertions and removals too, even
// after Cancel.
class CStaveAreaProperties : public QDialog {
    Q_OBJECT

public:
    static constexpr int MaxLines = 20;
    static constexpr int MaxParts = 4;
    // The spin reaches no further; a line loaded with more bars keeps them up to its own count.
    static constexpr int MaxSpinBars = 9;

    CStaveAreaProperties(CStaveArea& area, QWidget* parent = nullptr);

    // Shows the dialog over `parent`; true when the piper chose OK and the area took the settings.
    static bool Edit(CStaveArea& area, QWidget* parent);

    void accept() override;

private:
    QLayout* MakeLists();
    QWidget* MakeSettingsForm();
    QWidget* MakeDisplayBox();

    void FillLines();
    void FillParts();
    void LineChosen();
    void PartChosen();
    void BarsChanged(int bars);
    void TimeSigChosen();
    void ShowColour(std::uint32_t rgb);
    void ChooseOtherColour();

    void InsertLine();
    void RemoveLine();
    void InsertPart();
    void RemovePart();

    std::vector<int> BarsPerLine() const;
    void Apply();

    CStaveArea& m_area;
    std::uint32_t m_automaticColour; // the colour the staves had when the dialog opened
    std::uint32_t m_colour;          // red, green and blue as 0xRRGGBB

    QTreeWidget* m_lines;
    QSpinBox* m_bars;
    QPushButton* m_insertLine;
    QPushButton* m_removeLine;
    QTreeWidget* m_parts;
    QPushButton* m_insertPart;
    QPushButton* m_removePart;
    CTimeSigCombo* m_timeSig;
    QSpinBox* m_customBeats;
    QSpinBox* m_customUnit;
    QLabel* m_customLabel;
    QCheckBox* m_showKeySig;
    QCheckBox* m_showTimeSig;
    QCheckBox* m_showBarLines;
    QSpinBox* m_spacing;
    QToolButton* m_colourButton;
    QLabel* m_colourText;
};

} // namespace corrieval
