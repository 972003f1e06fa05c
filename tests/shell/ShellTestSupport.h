#pragma once

#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "platform/DataFolder.h"
#include "playback/NullAudioDevice.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <functional>
#include <memory>

namespace corrieval::testing {

// The instruments' recordings that the test run made in its data folder.
inline QString SamplesFolder()
{
    return DataSubfolder(QStringLiteral("Instrument Samples"));
}
inline bool SamplesPresent()
{
    return QFileInfo::exists(SamplesFolder() + QStringLiteral("bp1.wav"));
}

inline std::unique_ptr<AudioDevice> NullDevice()
{
    return std::make_unique<NullAudioDevice>();
}

// A tune of one system of `bars` bars with a crotchet or two in each.
inline std::unique_ptr<CCorrievalDoc> SmallTune(int bars = 2, int notes = 2)
{
    return fixtures::BuildTune(
        {.Pages = 1, .Groups = 1, .Parts = 1, .Columns = bars, .NotesPerBar = notes, .Title = false});
}

// Runs the event loop until `done` holds or `ms` pass; whether it held.
inline bool SpinUntil(const std::function<bool()>& done, int ms = 5000)
{
    const QDeadlineTimer deadline(ms);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

} // namespace corrieval::testing
