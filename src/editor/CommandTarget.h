#pragma once

namespace corrieval {

// What an idle update finds out about one command.
struct CommandState {
    bool enabled = false;
    bool checked = false;
};

// An owner of commands on the route a command travels: the active view, its document, the main
// frame, the application, in that order. Each answers only for the ids it owns and passes the
// rest on, so one id has exactly one owner however the route is built.
class CommandTarget {
public:
    virtual ~CommandTarget() = default;
    // Runs the command when this target owns `id`; false passes it on.
    virtual bool RunCommand(int id) = 0;
    // Fills `state` when this target owns `id`; false passes it on.
    virtual bool UpdateCommand(int id, CommandState& state) = 0;
};

} // namespace corrieval
