#pragma once

#include <QByteArray>
#include <QString>

namespace corrieval {

// The program's own key in the settings store; the "Settings" key, the recent files and the
// window's workspace are keys below it.
inline constexpr const char* ProductKeyPath = "Software\\Tormaven Software Ltd\\Corrieval4 Book";

// The folders the file dialogs start in, each ending with "/".
struct UserFolders {
    QString Skb; // "UserSKB": open, and the folder of the last file opened
    QString Imp; // "UserIMP": BWW and BMW import
    QString Exp; // "UserEXP": export of player files and sound
    QString Glm; // "UserGLM": Glenmarch import
};

// What the views show, kept over runs. Only read once the main frame exists.
struct ViewSettings {
    bool AutoZoom = false; // "Autozoom"
    bool Margins = false;  // "Margins"
};

// Each reader writes a missing value back with its default, so the store fills up at first run.
// A store that cannot be written leaves the defaults in use without a word.
UserFolders ReadUserFolders();
// Keeps the folder of `path` as the setting `name` ("UserSKB", ...).
void RememberUserFolder(const QString& name, const QString& path);
ViewSettings ReadViewSettings();
void WriteViewSettings(const ViewSettings& settings);

// The visual style's command id, 215 ("Blue Style") by default.
int ReadApplicationLook();
void WriteApplicationLook(int lookId);

// The main window's geometry as QWidget::saveGeometry gives it; empty before the first run ends.
QByteArray ReadWindowGeometry();
void WriteWindowGeometry(const QByteArray& geometry);

// "HomePage" in the settings when it names an http or https address, else empty. Not written back:
// the status bar's link opens the user guide unless someone names a page.
QString HomePage();

} // namespace corrieval
