#pragma once

#include <QToolButton>

namespace corrieval::ribbon {

// A flat button of the ribbon bound to an action: it triggers it and shows its state. Its caption
// is the action's (see CaptionOf); a large button breaks a long caption over two lines.
class RibbonButton : public QToolButton {
    Q_OBJECT

public:
    enum class Kind {
        Large,    // 32 pixel icon over the caption
        Small,    // 16 pixel icon beside the caption
        IconOnly, // 16 pixel icon, the caption as tool tip only
    };

    RibbonButton(QAction* action, Kind kind, QWidget* parent = nullptr);

protected:
    void actionEvent(QActionEvent* event) override;
    // Called after the button has taken over a change of its action.
    virtual void ActionChanged();

private:
    void ShowCaption();

    Kind m_kind;
};

} // namespace corrieval::ribbon
