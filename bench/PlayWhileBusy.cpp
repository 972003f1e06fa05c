// corrieval-play-busy: plays a tune through the sound server while the window is kept busy
// resizing, zooming and scrolling, and counts the times the server ran out of sound. Run by
// bench/play-while-busy.sh, which makes sure a sound server runs.
//   corrieval-play-busy TUNE SAMPLES_DIR [SECONDS]

#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "model/CorrievalDoc.h"
#include "platform/QtAudioDevice.h"
#include "shell/CommandTable.h"
#include "shell/MainFrame.h"
#include "shell/Transport.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextStream>

#include <vector>

using namespace corrieval;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.size() < 2) {
        out << "usage: corrieval-play-busy TUNE SAMPLES_DIR [SECONDS]\n";
        return 2;
    }
    const int seconds = args.value(2, QStringLiteral("20")).toInt();

    std::vector<platform::QtAudioDevice*> devices;
    CMainFrame frame(
        [&devices] {
            auto device = std::make_unique<platform::QtAudioDevice>();
            devices.push_back(device.get());
            return device;
        },
        args[1]);
    frame.resize(1200, 900);
    frame.show();
    if (!frame.OpenDocument(args[0]))
        return 1;
    // The import runs at the view's first paint.
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 5000 && !frame.ActiveChild()->Document().HasMusic())
        QCoreApplication::processEvents();
    if (!frame.Commands().State(command::Play).enabled) {
        out << "nothing to play: no sound server, no recordings, or no music in the tune ("
            << frame.Children().size() << " tunes open, "
            << (frame.Transport().CanRender() ? "can render" : "cannot render") << ")\n";
        return 1;
    }
    frame.Commands().Run(command::Loop);
    frame.Commands().Run(command::Play);

    // Busy in every way a user makes a window busy, with no pause between.
    const int zooms[] = {50, 75, 100, 150, 200, 300, 100};
    QElapsedTimer clock;
    clock.start();
    int step = 0;
    while (clock.elapsed() < seconds * 1000) {
        CCorrievalView* view = frame.ActiveView();
        frame.resize(step % 2 == 0 ? 1000 : 1400, step % 3 == 0 ? 700 : 950);
        view->SetZoom(zooms[step % std::size(zooms)]);
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum() * (step % 5) / 4);
        view->viewport()->repaint();
        QCoreApplication::processEvents();
        // The idle update restarts a looped tune.
        frame.Commands().UpdateAll();
        ++step;
    }
    frame.Commands().Run(command::Stop);
    std::uint32_t underruns = 0;
    for (const platform::QtAudioDevice* device : devices)
        underruns += device->Underruns();
    out << seconds << " s of play while resizing, zooming and scrolling (" << step
        << " changes): " << underruns << " underruns\n";
    return underruns == 0 ? 0 : 1;
}
