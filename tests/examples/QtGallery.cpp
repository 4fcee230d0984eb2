// SPDX-License-Identifier: Apache-2.0
#include "tests/examples/QtGallery.h"

#include <QElapsedTimer>
#include <QRegularExpression>

namespace zeltest {
namespace {

const QRegularExpression frameLine(QStringLiteral("^first frame after (\\d+) ms: (light|dark)$"),
                                   QRegularExpression::MultilineOption);

} // namespace

long GalleryRun::firstFrame() const {
    const auto match = frameLine.match(output);
    return match.hasMatch() ? match.captured(1).toLong() : -1;
}

bool GalleryRun::beganDark() const {
    return frameLine.match(output).captured(2) == QLatin1String("dark");
}

GalleryProcess::GalleryProcess(const QStringList& arguments)
    : arguments_(arguments), environment_(QProcessEnvironment::systemEnvironment()) {
    arguments_ << QStringLiteral("--screenshot") << folder_.filePath(QStringLiteral("picture.png"));
    const bool hasDesktop = environment_.contains(QStringLiteral("ZEL_TEST_DESKTOP"));
    set("QT_QPA_PLATFORM", hasDesktop ? QStringLiteral("xcb") : QStringLiteral("offscreen"));
    set("XDG_CONFIG_HOME", folder_.path());
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

void GalleryProcess::set(const char* variable, const QString& value) {
    environment_.insert(QLatin1String(variable), value);
}

void GalleryProcess::inheritSettings(const GalleryProcess& other) {
    set("XDG_CONFIG_HOME", other.folder_.path());
}

void GalleryProcess::start() {
    process_.setProcessEnvironment(environment_);
    process_.start(QStringLiteral(GALLERY_PROGRAM), arguments_);
}

bool GalleryProcess::waitFor(const QString& text) {
    while (!output_.contains(text)) {
        if (!process_.waitForReadyRead(30000)) {
            return false;
        }
        output_ += QString::fromUtf8(process_.readAllStandardOutput());
    }
    return true;
}

GalleryRun GalleryProcess::finish() {
    GalleryRun run;
    if (process_.waitForFinished(30000) && process_.exitStatus() == QProcess::NormalExit) {
        run.status = process_.exitCode();
    }
    run.output = output_ + QString::fromUtf8(process_.readAllStandardOutput());
    run.picture = QImage(folder_.filePath(QStringLiteral("picture.png")));
    static const QRegularExpression pointLine(QStringLiteral("^(?:swatch )?(\\w+) (\\d+) (\\d+)$"),
                                              QRegularExpression::MultilineOption);
    auto lines = pointLine.globalMatch(run.output);
    while (lines.hasNext()) {
        const auto line = lines.next();
        run.points[line.captured(1).toStdString()] =
            QPoint(line.captured(2).toInt(), line.captured(3).toInt());
    }
    return run;
}

} // namespace zeltest
