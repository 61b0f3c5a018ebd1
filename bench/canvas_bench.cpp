// canvas_bench: how long the canvas takes to follow a drag, and to show a large project. Every figure stands beside a
// calibration loop, so that figures of different machines and moments can be compared. Wall time and, for a machine
// that is busy with other things, the processor time of the program. Medians of five runs.

#include "canvas/canvas_view.h"
#include "canvas_bench_world.h"

#include <QApplication>
#include <QColor>
#include <QImage>
#include <QMouseEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

namespace
{

using namespace velmora;
using Clock = std::chrono::steady_clock;

constexpr int runs = 5;
constexpr int movements = 200;

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double processorMilliseconds()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The times of one step.
struct Times {
    double wall = 0;
    double processor = 0;
};

template <typename Work>
Times timesOf(const Work& work)
{
    const auto begin = Clock::now();
    const double before = processorMilliseconds();
    work();
    return {millisecondsSince(begin), processorMilliseconds() - before};
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double percentile99(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(std::ceil(0.99 * static_cast<double>(values.size()))) - 1];
}

/// A fixed amount of arithmetic.
double calibration()
{
    const auto begin = Clock::now();
    volatile std::uint64_t sink = 0;
    std::uint64_t value = 88172645463325252ULL;
    for (int i = 0; i < 2'000'000; ++i) {
        value ^= value << 13;
        value ^= value >> 7;
        value ^= value << 17;
        sink = sink + value;
    }
    return millisecondsSince(begin);
}

/// A noisy picture of 24 megapixels.
void writeBackground(const QString& file)
{
    QImage image(6000, 4000, QImage::Format_RGB32);
    std::uint32_t seed = 1;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            seed = seed * 1664525U + 1013904223U;
            line[x] = qRgb((x / 24 + static_cast<int>(seed >> 29)) & 255, y / 16 & 255, 140);
        }
    }
    image.save(file, "JPG", 85);
}

class Hand
{
public:
    explicit Hand(CanvasView& canvas) : m_canvas(canvas) {}

    void send(QEvent::Type type, Point content, Qt::MouseButton button, Qt::MouseButtons held)
    {
        const CanvasPlacement place = m_canvas.placement();
        const QPointF point = place.content.topLeft() + QPointF(content.x, content.y) * place.scale;
        QMouseEvent event(type, point, m_canvas.mapToGlobal(point), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_canvas, &event);
        QCoreApplication::processEvents(); // the repaint
    }
    /// Milliseconds of every movement with its repaint, along a curve round `from`.
    std::vector<Times> drag(Point from)
    {
        send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        std::vector<Times> times;
        Point at = from;
        for (int i = 1; i <= movements; ++i) {
            at = {from.x + 90 * std::sin(i * 0.09), from.y + 60 * std::sin(i * 0.05)};
            times.push_back(timesOf([&] { send(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton); }));
        }
        send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
        return times;
    }

private:
    CanvasView& m_canvas;
};

/// Prints a line of name, 99th percentile and median of the wall time of the steps that `work` makes, the same of the
/// processor time, and the calibration loop's time; all the medians of all runs, in milliseconds, with tabs between.
template <typename Work>
void measure(const std::string& name, const Work& work)
{
    std::vector<double> wall99, wall50, processor99, processor50, calibrations;
    for (int i = 0; i < runs; ++i) {
        calibrations.push_back(calibration());
        std::vector<double> wall, processor;
        for (const Times& times : work()) {
            wall.push_back(times.wall);
            processor.push_back(times.processor);
        }
        wall99.push_back(percentile99(wall));
        wall50.push_back(median(wall));
        processor99.push_back(percentile99(processor));
        processor50.push_back(median(processor));
    }
    std::printf("%s\t%.2f\t%.2f\t%.2f\t%.2f\t%.2f\n", name.c_str(), median(wall99), median(wall50), median(processor99),
                median(processor50), median(calibrations));
}

DMGProject busyProject(const std::string& background, const std::string& picture)
{
    DMGProject project;
    project.windowWidth = 900;
    project.windowHeight = 560;
    project.backgroundKind = BackgroundKind::image;
    project.backgroundImagePath = background;
    for (int i = 0; i < 50; ++i) {
        DMGOverlayImage overlay;
        overlay.sourcePath = picture;
        overlay.setBounds({20.0 + 80 * (i % 10), 20.0 + 95 * (i / 10), 120, 90});
        project.overlayImages.push_back(overlay);
    }
    DMGTextOverlay text;
    text.shadowEnabled = true;
    text.setBounds({300, 480, 300, 36});
    project.textOverlays.push_back(text);
    for (int i = 0; i < 4; ++i)
        project.items.push_back({.displayName = "Item " + std::to_string(i),
                                 .x = 150.0 + 190 * i,
                                 .y = 260,
                                 .symlinkTarget = "/Applications"});
    return project;
}

void measureDrags(CanvasView& canvas, AppState& state)
{
    Hand hand(canvas);
    const struct {
        const char* name;
        std::optional<double> zoom;
    } zooms[] = {{"fit", std::nullopt}, {"8x", 8.0}};
    for (const auto& [zoomName, zoom] : zooms) {
        canvas.setZoom(zoom);
        const CanvasPlacement place = canvas.placement();
        const Point middle = place.toContent(QPointF(canvas.width() / 2.0, canvas.height() / 2.0));
        const auto dragOf = [&](const char* what, const auto& prepare) {
            measure(std::string(what) + ", " + zoomName, [&] {
                prepare(middle);
                QCoreApplication::processEvents();
                return hand.drag(middle);
            });
        };
        dragOf("icon over 24 MP and 50 overlays", [&](Point at) {
            state.editContents();
            state.edit({}, [&](DMGProject& project) { project.items.back().setPosition(at); });
        });
        dragOf("overlay over 24 MP and 50 overlays", [&](Point at) {
            state.edit({}, [&](DMGProject& project) {
                project.overlayImages[20].x = at.x - 60;
                project.overlayImages[20].y = at.y - 45;
            });
            state.selectOverlay(state.project().overlayImages[20].id);
        });
        dragOf("background of 24 MP under 50 overlays", [&](Point at) {
            state.selectOverlay({});
            state.edit({}, [&](DMGProject& project) {
                // Out of the hand's way.
                for (DMGOverlayImage& overlay : project.overlayImages) {
                    if (std::abs(overlay.x + 60 - at.x) < 75 && std::abs(overlay.y + 45 - at.y) < 60)
                        overlay.x = at.x + 40;
                }
            });
            state.editBackground();
        });
    }
}

void measureOpening(CanvasView& canvas, AppState& state)
{
    canvas.setZoom({});
    state.editContents(); // as a project opens
    DMGProject project;
    for (int i = 0; i < 1000; ++i)
        project.items.push_back({.sourcePath = "/usr/share/doc/file-" + std::to_string(i),
                                 .displayName = "File number " + std::to_string(i) + ".txt",
                                 .x = 20.0 + 14 * (i % 40),
                                 .y = 30.0 + 12 * (i / 40)});
    measure("showing a project of 1,000 items", [&] {
        state.edit({}, [](DMGProject& open) { open = DMGProject(); });
        QCoreApplication::processEvents();
        return std::vector{timesOf([&] {
            state.edit({}, [&](DMGProject& open) { open = project; });
            QCoreApplication::processEvents();
        })};
    });
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QTemporaryDir folder;
    bench::CanvasBenchWorld world(folder.path().toStdString());
    const QString background = folder.filePath(QStringLiteral("background.jpg"));
    const QString picture = folder.filePath(QStringLiteral("picture.png"));
    writeBackground(background);
    QImage overlay(800, 600, QImage::Format_ARGB32_Premultiplied);
    overlay.fill(QColor(200, 80, 30, 120));
    overlay.save(picture);

    AppState& state = world.state;
    CanvasView canvas(state, world.themes, world.arrows, world.pictures);
    canvas.resize(1180, 760);
    canvas.show();
    QCoreApplication::processEvents();
    state.edit({}, [&](DMGProject& open) { open = busyProject(background.toStdString(), picture.toStdString()); });
    QCoreApplication::processEvents();
    measureDrags(canvas, state);
    measureOpening(canvas, state);
    return 0;
}
