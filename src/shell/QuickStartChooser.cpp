#include "shell/QuickStartChooser.h"

#include <QCommandLinkButton>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace corrieval {

CQuickStartChooser::CQuickStartChooser(const QStringList& recentFiles, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Corrieval"));
    auto* layout = new QVBoxLayout(this);

    auto* newTune = new QCommandLinkButton(QStringLiteral("New tune"), QStringLiteral("Start on an empty page"));
    auto* open = new QCommandLinkButton(QStringLiteral("Open a tune..."), QStringLiteral("Choose a tune from your files"));
    layout->addWidget(newTune);
    layout->addWidget(open);
    connect(newTune, &QAbstractButton::clicked, this, [this] {
        accept();
        emit NewChosen();
    });
    connect(open, &QAbstractButton::clicked, this, [this] {
        accept();
        emit OpenChosen();
    });

    if (!recentFiles.isEmpty()) {
        layout->addWidget(new QLabel(QStringLiteral("Recent tunes:")));
        auto* list = new QListWidget;
        list->setAccessibleName(QStringLiteral("Recent tunes"));
        // Names alone, as a piper knows them; the folder is in the tooltip.
        for (const QString& path : recentFiles) {
            auto* item = new QListWidgetItem(QFileInfo(path).fileName(), list);
            item->setToolTip(QDir::toNativeSeparators(path));
            item->setData(Qt::UserRole, path);
        }
        list->setMaximumHeight(list->sizeHintForRow(0) * 6 + 2 * list->frameWidth() + 4);
        connect(list, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
            accept();
            emit RecentChosen(item->data(Qt::UserRole).toString());
        });
        layout->addWidget(list);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace corrieval
