// SPDX-License-Identifier: Apache-2.0
#include "GalleryOptions.h"

#include <QCommandLineParser>
#include <QStringList>

#include <cstdio>
#include <cstdlib>

namespace gallery {
namespace {

[[noreturn]] void refuse(const QString& reason) {
    std::fprintf(stderr, "%s\nTry --help.\n", qPrintable(reason));
    std::exit(2);
}

Source sourceOf(const QString& word) {
    if (word == QLatin1String("light")) {
        return Source::Light;
    }
    if (word == QLatin1String("dark")) {
        return Source::Dark;
    }
    if (word != QLatin1String("portal")) {
        refuse(QStringLiteral("--source is portal, light or dark, not '%1'.").arg(word));
    }
#ifndef GALLERY_FOLLOWS_PORTAL
    refuse(QStringLiteral("This gallery was built without the desktop portal."));
#else
    return Source::Portal;
#endif
}

#ifdef GALLERY_FOLLOWS_PORTAL
constexpr const char* defaultSource = "portal";
#else
constexpr const char* defaultSource = "light";
#endif

} // namespace

Options optionsOf(int argc, char** argv) {
    QStringList words;
    for (int index = 0; index < argc; ++index) {
        words.append(QString::fromLocal8Bit(argv[index]));
    }
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows what Qt widgets look like in the styles of ZelStyleKit."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption source(
        QStringLiteral("source"),
        QStringLiteral("Who says whether it is dark: the desktop (portal), or always the same."),
        QStringLiteral("portal|light|dark"), QString::fromLatin1(defaultSource));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Saves a picture of the first frame, says how long it took and where each "
                       "swatch is, and ends."),
        QStringLiteral("file"));
    const QCommandLineOption then(
        QStringLiteral("then"),
        QStringLiteral(
            "Turns light or dark after the first frame, or, with the portal, waits until "
            "the desktop does; the picture is taken then."),
        QStringLiteral("light|dark"));
    const QCommandLineOption choose(
        QStringLiteral("choose"),
        QStringLiteral("Chooses a mode from the window's menu after the first frame, such as "
                       "always-dark."),
        QStringLiteral("mode"));
    parser.addOptions({source, screenshot, then, choose});
    if (!parser.parse(words)) {
        refuse(parser.errorText());
    }
    if (parser.isSet(help)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        std::exit(0);
    }
    if (!parser.positionalArguments().isEmpty()) {
        refuse(QStringLiteral("Unexpected: %1.").arg(parser.positionalArguments().constFirst()));
    }

    Options options;
    options.source = sourceOf(parser.value(source));
    options.screenshot = parser.value(screenshot);
    options.choose = parser.value(choose);
    if (parser.isSet(then)) {
        const QString word = parser.value(then);
        if (word != QLatin1String("light") && word != QLatin1String("dark")) {
            refuse(QStringLiteral("--then is light or dark, not '%1'.").arg(word));
        }
        options.then = word == QLatin1String("dark");
    }
    return options;
}

} // namespace gallery
