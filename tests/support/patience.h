#pragma once

#include <QtTest>

// Qt gives a condition five seconds, which other processes on a busy machine may need.
constexpr int patience = 20000;
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patience)
#undef QTRY_VERIFY
#define QTRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, patience)
