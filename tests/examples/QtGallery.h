// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <map>
#include <string>

namespace zeltest {

/// What a run of the gallery left behind.
struct GalleryRun {
    int status = -1;
    QString output;
    QImage picture;
    /// Key to the middle of its swatch; "sidebar" and "tinted", the derived style's card.
    std::map<std::string, QPoint> points;

    /// The pixel under a swatch; transparent where there is none.
    [[nodiscard]] QRgb pixel(const std::string& key) const {
        const auto found = points.find(key);
        return found == points.end() || !picture.valid(found->second)
                   ? 0
                   : picture.pixel(found->second);
    }
    /// How long the first frame took, in milliseconds; -1 where there was none.
    [[nodiscard]] long firstFrame() const;
    /// Whether the first frame was dark.
    [[nodiscard]] bool beganDark() const;
};

/// Runs the gallery with a picture to take: on the display of the tests' own desktop where they run
/// in one, else on none.
class GalleryProcess {
public:
    explicit GalleryProcess(const QStringList& arguments);

    /// Gives it the settings of another run, which has ended.
    void inheritSettings(const GalleryProcess& other);
    /// Sets a variable of its environment.
    void set(const char* variable, const QString& value);
    void start();
    /// Waits until it has printed this; false where it ends first, or nothing comes within 30 s.
    bool waitFor(const QString& text);
    /// Waits for its end.
    GalleryRun finish();

private:
    QTemporaryDir folder_;
    QStringList arguments_;
    QProcess process_;
    QProcessEnvironment environment_;
    QString output_;
};

} // namespace zeltest
