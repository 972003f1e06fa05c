#pragma once

namespace corrieval {

class CommandTable;

// Defines every command of the program in the table: its caption, its icon and its shortcut.
void DefineCommands(CommandTable& table);

} // namespace corrieval
