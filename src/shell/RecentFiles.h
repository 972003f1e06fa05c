#pragma once

#include <QObject>
#include <QStringList>

namespace corrieval {

// The six files opened most recently, newest first, kept in the settings store under the
// program's key ("Recent File List", "File1" to "File6"). Menus show DisplayName and give the
// full path as tooltip.
class RecentFiles : public QObject {
    Q_OBJECT

public:
    static constexpr int MaxCount = 6;

    // Reads the list from the settings store.
    explicit RecentFiles(QObject* parent = nullptr);

    // Puts `path` (made absolute) first, dropping an older entry of the same file and the seventh.
    void Add(const QString& path);
    // Takes out a file that could not be opened.
    void Remove(const QString& path);
    const QStringList& Paths() const { return m_paths; }

    // The name shown for `path`: the file name without its folders.
    static QString DisplayName(const QString& path);

signals:
    // The list changed and was written to the store.
    void Changed();

private:
    void Store();

    QStringList m_paths;
};

} // namespace corrieval
