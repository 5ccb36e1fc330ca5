#include "cli/ProgressLine.h"
#include "Testing.h"

#include <QTemporaryFile>

// What a load of three steps prints.
static std::string Printed(std::chrono::milliseconds patience) {
    QTemporaryFile file;
    EXPECT_TRUE(file.open());
    std::FILE* const stream = std::fopen(QFile::encodeName(file.fileName()).constData(), "w");
    {
        CProgressLine line(stream, "Packing", patience);
        for (const double done : {0.055, 0.5, 1.0})
            line.Show(done);
    }
    std::fclose(stream);
    return file.readAll().toStdString();
}

TEST(ProgressLine, AppearsForALongLoadOnlyAndLeavesNothing) {
    EXPECT_EQ(Printed(std::chrono::hours(1)), "");
    const std::string printed = Printed(std::chrono::milliseconds(0));
    EXPECT_TRUE(printed.starts_with("\rPacking   5 %")) << printed;
    EXPECT_TRUE(printed.ends_with("\r             \r")) << printed;
}
