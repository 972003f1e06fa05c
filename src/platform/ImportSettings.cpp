#include "platform/ImportSettings.h"

#include "platform/SettingsStore.h"

namespace corrieval {

bool StrictBwwSetting()
{
    const SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
    return settings.IntValue(QStringLiteral("StrictBWW")).value_or(0) != 0;
}

} // namespace corrieval
