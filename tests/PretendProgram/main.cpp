#include "App/QuillmereApp.h"
#include "PretendProgram/PretendHome.h"

#include <QCommandLineParser>
#include <QGuiApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Quillmere on a machine that exists only in memory."_qs);
    parser.addHelpOption();
    const QCommandLineOption empty(u"empty"_qs, u"Starts with a home that holds nothing."_qs);
    const QCommandLineOption dark(u"dark"_qs, u"Starts on a dark desktop."_qs);
    parser.addOptions({empty, dark});
    parser.process(application);

    PretendMachine machine;
    if (!parser.isSet(empty))
        fillPretendHome(machine);
    if (parser.isSet(dark))
        machine.appearance->set(ColorScheme::Dark, false);
    QuillmereApp quillmere(machine.machine());
    return quillmere.start() ? QGuiApplication::exec() : 1;
}
