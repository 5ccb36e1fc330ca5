#include "CapturedReports.h"

#include <gtest/gtest.h>

TEST(Assertion, GoesToTheReplacedReporterUntilTheOldOneIsBack) {
    CapturedReports outer;
    {
        CapturedReports inner;
        support::ReportAssertion("inner text");
        EXPECT_EQ(inner.Texts(), QStringList{"inner text"});
    }
    support::ReportAssertion("outer text");
    EXPECT_EQ(outer.Texts(), QStringList{"outer text"});
}

TEST(Assertion, NamesItsTextAndPlaceAndStopsTheProgram) {
    support::Assert(true, "never seen");
    EXPECT_DEATH(support::Assert(false, "p!=0"), "p!=0, .*AssertionTest.cpp:[0-9]+");
}
