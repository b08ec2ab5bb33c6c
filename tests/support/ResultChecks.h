#pragma once

#include <QTest>

// Checks on the core's Status and Result<T> values that show the failure's message when they
// fail. A value that a test needs to go on with is read with .value(): a failed result stops
// the test program with its message.
#define KVERIFY_OK(expr)                                                                           \
    do {                                                                                           \
        const auto& kestrumResult_ = (expr);                                                       \
        QVERIFY2(kestrumResult_.ok(), qPrintable(kestrumResult_.error()));                         \
    } while (false)

// The call fails, with exactly `message`.
#define KCOMPARE_FAILURE(expr, message)                                                            \
    do {                                                                                           \
        const auto& kestrumResult_ = (expr);                                                       \
        QVERIFY2(!kestrumResult_.ok(), "the call succeeded");                                      \
        QCOMPARE(kestrumResult_.error(), QString(message));                                        \
    } while (false)

// Where QVERIFY cannot return (a helper that gives a value): a failure stops the test program
// with its message, as reading the value of a failed Result does.
#define KREQUIRE_OK(expr)                                                                          \
    do {                                                                                           \
        const auto& kestrumResult_ = (expr);                                                       \
        if (!kestrumResult_.ok()) {                                                                \
            qFatal("%s failed: %s", #expr, qPrintable(kestrumResult_.error()));                    \
        }                                                                                          \
    } while (false)
