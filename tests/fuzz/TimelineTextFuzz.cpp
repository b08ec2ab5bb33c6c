// The timeline page text reader under a fuzzer: any bytes are read as a page, written back,
// read again, laid out and hit-tested; nothing may crash, hang or allocate without bound.
// Built as a libFuzzer target with clang (KESTRUM_FUZZ), and as a replay program that runs the
// stored corpus through the same entry point in every build.

#include "editors/timeline/TimelineEvents.h"
#include "editors/timeline/TimelineNavigation.h"
#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/TimelineText.h"

#include <QGuiApplication>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace kestrum::timeline;
    const QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    TimelineTextLimits limits;
    limits.maxEvents = 2000;
    TimelineModel model;
    const kestrum::Status loaded =
        TimelineText::LoadTimeLinefromString(model, TimelineText::decode(input), limits);
    if (!loaded.ok() && loaded.error().isEmpty()) {
        std::abort(); // a failure always says why
    }
    // What is written reads again, completely, with the same texts and each event's link.
    const QString written = TimelineText::SaveTimeLineToString(model);
    TimelineModel again;
    if (!TimelineText::LoadTimeLinefromString(again, written, limits).ok() ||
        again.events.size() != model.events.size()) {
        std::abort();
    }
    auto link = [](const TimelineModel& m, const TimelineEvent& e) {
        return e.tag >= 0 && e.tag < m.links.size() ? m.links.at(e.tag) : QString();
    };
    for (std::size_t i = 0; i < model.events.size(); ++i) {
        if (again.events[i].annotation != model.events[i].annotation ||
            again.events[i].hint != model.events[i].hint ||
            link(again, again.events[i]) != link(model, model.events[i])) {
            std::abort();
        }
    }
    TimelineNavigation::AdjustScale(model, QStringLiteral("dd/mm/yyyy"));
    TimelineEvents::applyLayoutMode(model, LayoutMode::Alternate, 200);
    const QSize control(320, 200);
    TimelineRenderer::layout(model, control);
    TimelineRenderer::hitTest(model, control, QPoint(160, 100));
    return 0;
}
