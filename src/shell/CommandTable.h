#pragma once

#include "editor/CommandTarget.h"

#include <QHash>
#include <QKeySequence>
#include <QObject>

#include <functional>
#include <vector>

class QAction;

namespace corrieval {

// Every command of the program as one QAction, keyed by its id. The ribbon, the menus and the
// shortcuts all show these actions; none of them owns a command.
//
// A command runs through a route of targets, asked in order: the active view, its document, the
// main frame, the application. The first that owns the id runs it. Enabling and check marks are
// worked out the same way when the application is idle, so what the ribbon shows follows the
// state of the program without any widget having to be told.
class CommandTable : public QObject {
    Q_OBJECT

public:
    using Route = std::function<std::vector<CommandTarget*>()>;

    explicit CommandTable(QObject* parent = nullptr);

    // Makes the action of `id`. `caption` may carry a "\n" and a description after it, as the
    // ribbon's captions do ("Properties\nProperties of Selected Item"): the part before is the
    // action's text, the description its tool tip.
    QAction* Define(int id, const QString& caption, const QString& icon = {}, const QKeySequence& shortcut = {},
                    bool checkable = false);
    QAction* Action(int id) const;
    const QHash<int, QAction*>& Actions() const { return m_actions; }

    void SetRoute(Route route) { m_route = std::move(route); }
    // Runs `id` on the first target of the route that owns it; false when none does.
    bool Run(int id);
    // The state of `id` as its owner sees it now; disabled when nobody owns it.
    CommandState State(int id);
    // Brings every action's enabled and checked state up to date.
    void UpdateAll();

private:
    QHash<int, QAction*> m_actions;
    Route m_route;
    // Set while an action is being run or updated, so that setChecked during an update does not
    // run the command again.
    bool m_updating = false;
};

} // namespace corrieval
