// The window program: starts the session, shows the environment settings where the start
// asks for them, then the main window.

#include "base/Version.h"
#include "ui/DesktopProgram.h"
#include "ui/FileChooser.h"
#include "ui/MainWindow.h"
#include "ui/Screenshots.h"
#include "ui/WidgetLook.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <optional>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vornhale"));
    QApplication::setApplicationVersion(QString::fromUtf8(vornhale::base::kProgramVersion.data(),
                                                         static_cast<qsizetype>(vornhale::base::kProgramVersion.size())));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Vornhale: contest logs to Turbo HAMLOG"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption home(QStringLiteral("home"),
                                  QStringLiteral("The program folder (settings, traces, work)."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption open(QStringLiteral("open"), QStringLiteral("A log to open at once."),
                                  QStringLiteral("LOG"));
    const QCommandLineOption shots(
        QStringLiteral("screenshot-dir"),
        QStringLiteral("Writes pictures of the windows into DIR and ends (with --open, after "
                       "converting the log)."),
        QStringLiteral("DIR"));
    parser.addOption(home);
    parser.addOption(open);
    parser.addOption(shots);
    parser.process(app);

    vornhale::ui::DesktopProgram::useProgramFont();
    std::optional<std::filesystem::path> folder;
    if (parser.isSet(home)) {
        folder = vornhale::ui::utf8(parser.value(home));
    }
    vornhale::ui::QtFileChooser chooser;
    vornhale::ui::DesktopProgram program(folder, chooser);
    QObject::connect(&program, &vornhale::ui::DesktopProgram::ended, &app,
                     [](int code) { QApplication::exit(code); });
    program.setProgramEnd([](int code) {
        // The program ends on the spot, whatever a conversion is doing.
        std::_Exit(code);
    });

    if (parser.isSet(shots)) {
        if (!program.start()) {
            return 1;
        }
        const bool ok =
            vornhale::ui::takeScreenshots(program, parser.value(shots), parser.value(open));
        if (vornhale::ui::MainWindow* window = program.mainWindow()) {
            window->close();
        }
        return ok ? 0 : 1;
    }

    if (parser.isSet(open)) {
        const QString log = parser.value(open);
        QObject::connect(
            &program, &vornhale::ui::DesktopProgram::mainWindowShown, &program,
            [&program, log] { program.mainWindow()->openPath(vornhale::ui::utf8(log)); });
    }
    QTimer::singleShot(0, &program, [&program] { program.start(); });
    return app.exec();
}
