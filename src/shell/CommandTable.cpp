#include "shell/CommandTable.h"

#include <QAction>

namespace corrieval {

CommandTable::CommandTable(QObject* parent) : QObject(parent) {}

QAction* CommandTable::Define(int id, const QString& caption, const QString& icon, const QKeySequence& shortcut,
                              bool checkable)
{
    Q_ASSERT(!m_actions.contains(id));
    auto* action = new QAction(caption.section(QLatin1Char('\n'), 0, 0), this);
    const QString description = caption.section(QLatin1Char('\n'), 1);
    // A single letter after the "\n" is a key tip, not a description.
    if (description.size() > 1)
        action->setToolTip(description);
    action->setData(id);
    action->setCheckable(checkable);
    if (!icon.isEmpty())
        action->setProperty("corrieval.icon", icon);
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
        action->setShortcutContext(Qt::ApplicationShortcut);
    }
    // A checkable action flips its own check mark when triggered; the command decides the mark,
    // so the next update puts it right whatever the command did.
    connect(action, &QAction::triggered, this, [this, id] {
        if (!m_updating)
            Run(id);
    });
    m_actions.insert(id, action);
    return action;
}

QAction* CommandTable::Action(int id) const { return m_actions.value(id, nullptr); }

bool CommandTable::Run(int id)
{
    if (!m_route)
        return false;
    for (CommandTarget* target : m_route()) {
        // Only an enabled command runs: a shortcut may fire before the idle update greys it.
        CommandState state;
        if (target->UpdateCommand(id, state)) {
            if (state.enabled)
                target->RunCommand(id);
            UpdateAll();
            return true;
        }
    }
    return false;
}

CommandState CommandTable::State(int id)
{
    CommandState state;
    if (!m_route)
        return state;
    for (CommandTarget* target : m_route()) {
        if (target->UpdateCommand(id, state))
            return state;
    }
    return CommandState{};
}

void CommandTable::UpdateAll()
{
    if (m_updating)
        return;
    m_updating = true;
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it) {
        const CommandState state = State(it.key());
        QAction* action = it.value();
        if (action->isEnabled() != state.enabled)
            action->setEnabled(state.enabled);
        if (action->isCheckable() && action->isChecked() != state.checked)
            action->setChecked(state.checked);
    }
    m_updating = false;
}

} // namespace corrieval
