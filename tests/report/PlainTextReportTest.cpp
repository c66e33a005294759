#include <gtest/gtest.h>

#include "caudalis/report/PlainTextReport.hpp"

using namespace caudalis::design;

TEST(PlainTextReport, AlignsColumnsNumbersToTheRight) {
    const ReportTable outlets{"Outlets",
                              {"outlet", "flow l/s", "nozzle"},
                              {{"1-1", "0.012", "#6"}, {"12-104", "1.5", "#24 (4.76 mm)"}},
                              {false, true, false}};
    EXPECT_EQ(PlainTextReport::table(outlets),
              "Outlets\n"
              "outlet  flow l/s  nozzle\n"
              "1-1        0.012  #6\n"
              "12-104       1.5  #24 (4.76 mm)\n");
}

TEST(PlainTextReport, ListsLabelValueTablesAsTwoColumns) {
    const ReportTable summary{"", {}, {{"Irrigated area", "57.09 ha"}, {"CU", "99.4 %"}}, {}};
    EXPECT_EQ(PlainTextReport::table(summary), "  Irrigated area  57.09 ha\n  CU              99.4 %\n");
}

TEST(PlainTextReport, CountsUtf8CharactersAsOneColumn) {
    const ReportTable table{"",
                            {"a", "b"},
                            {{"\xC2\xB1"
                              "10 %",
                              "x"},
                             {"abcde", "y"}},
                            {}};
    EXPECT_EQ(PlainTextReport::table(table),
              "a      b\n\xC2\xB1"
              "10 %  x\nabcde  y\n");
}

TEST(PlainTextReport, WrapsParagraphsAndLeavesPlotsOut) {
    EXPECT_EQ(PlainTextReport::wrap("one two three four", 9), "one two\nthree\nfour\n");
    ReportDocument document;
    document.title = "Chart";
    document.subtitle = {"North pivot"};
    document.sections.push_back(
        ReportSection{"Findings", {ReportParagraph{"All good."}, ReportPlot{"Pressure", "", "", "", {}}}});
    EXPECT_EQ(PlainTextReport::render(document), "Chart\nNorth pivot\n\nFindings\n--------\nAll good.\n");
}
