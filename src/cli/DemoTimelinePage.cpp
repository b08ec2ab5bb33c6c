#include "DemoTimelinePage.h"

#include "common/DayCount.h"
#include "editors/timeline/TimelineModel.h"
#include "editors/timeline/TimelineText.h"

#include <QDate>

namespace kestrum::cli {

namespace {

double day(int year, int month, int dayOfMonth, int hour = 0)
{
    return common::toDayCount(QDateTime(QDate(year, month, dayOfMonth), QTime(hour, 0)));
}

} // namespace

QByteArray demoTimelineContent()
{
    using timeline::TimelineEvent;
    timeline::TimelineModel m;
    m.minimumRange = day(2018, 1, 1);
    m.maximumRange = day(2027, 1, 1);
    m.rangeFrom = day(2018, 7, 1);
    m.rangeTo = day(2026, 7, 1);

    struct Milestone
    {
        double when;
        const char* annotation;
        const char* hint;
        // The host's link record: source, place, project, item kind ("2": a coded passage
        // whose location can be shown), code.
        const char* link;
    };
    const Milestone milestones[] = {
        {day(2019, 3, 11), "Office move announced", "Head office moves to the river site",
         "Interview 04\tpar. 3\tInterviews 2026\t1\tContext"},
        {day(2020, 3, 16, 9), "All staff remote", "First lockdown: every team works from home",
         "Interview 02\tpar. 8\tInterviews 2026\t2\tCommunication rhythms"},
        {day(2020, 6, 1), "Daily video stand-ups", "Team leads introduce a 15-minute call",
         "Interview 11\tpar. 21\tInterviews 2026\t2\tCommunication rhythms"},
        {day(2021, 1, 18), "Newcomers join remotely", "Cohort of 14 hired without an office day",
         "Interview 17\tpar. 5\tInterviews 2026\t2\tIsolation and belonging"},
        {day(2021, 9, 6), "Hybrid pilot", "Two office days a week in three departments",
         "Survey 2022\tQ12\tSurvey\t1\tWeekly rhythm"},
        {day(2022, 4, 4), "Quiet hour agreed", "No messages after four in the afternoon",
         "Interview 22\tpar. 40\tInterviews 2026\t2\tQuiet"},
        {day(2023, 2, 13), "Team charter revised", "Belonging added to the team charter",
         "Charter v3\tsection 2\tDocuments\t1\tPolicy"},
        {day(2024, 5, 20), "Interviews begin", "24 interviews in five organisations",
         "Method notes\tpar. 1\tInterviews 2026\t1\tMethod"},
        {day(2025, 11, 3), "Survey closes", "312 answers, 61 % response rate",
         "Survey 2025\tsummary\tSurvey\t1\tMethod"},
    };
    for (const Milestone& s : milestones) {
        TimelineEvent e = m.newEvent();
        e.position = s.when;
        e.annotation = QString::fromUtf8(s.annotation);
        e.hint = QString::fromUtf8(s.hint);
        e.annotationImageIndex = -1;
        m.links << QString::fromUtf8(s.link);
        e.tag = int(m.links.size() - 1);
        m.events.push_back(e);
    }
    return timeline::TimelineText::encode(timeline::TimelineText::SaveTimeLineToString(m));
}

} // namespace kestrum::cli
