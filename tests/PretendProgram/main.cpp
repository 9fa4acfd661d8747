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
    const QCommandLineOption language(u"language"_qs, u"Starts in that language: en, es or ru."_qs, u"code"_qs);
    parser.addOptions({empty, dark, language});
    parser.process(application);

    PretendMachine machine;
    if (!parser.isSet(empty))
        fillPretendHome(machine);
    if (parser.isSet(dark))
        machine.appearance->set(ColorScheme::Dark, false);
    if (parser.isSet(language))
        machine.defaults->setString(Localizer::languageKey(), parser.value(language));
    QuillmereApp quillmere(machine.machine());
    return quillmere.start() ? QGuiApplication::exec() : 1;
}
