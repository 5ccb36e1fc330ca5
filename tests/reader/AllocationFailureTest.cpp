// What reading does when memory runs out, tried at every single allocation.
#include "GraphData.h"
#include "XmlReader.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {

int g_allocationsLeft = -1; // the one after them fails; negative: none does

} // namespace

void* operator new(size_t size) {
    if (g_allocationsLeft == 0) {
        g_allocationsLeft = -1;
        throw std::bad_alloc();
    }
    if (g_allocationsLeft > 0)
        --g_allocationsLeft;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}

TEST(XmlReader, TurnsAnExceptionIntoAResult) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("file.xml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<Analysis Name='An analysis with a long name'><DataDefinition><IndexSet "
               "Name='Time'><Unit/></IndexSet>"
               "<VariablesDefinitions><TypedData Name='V' Type='Short' Color='#0000FF'/><TypedData Name='B' "
               "Type='Binary'/>"
               "</VariablesDefinitions></DataDefinition><Groups><Group Name='A group with a long name'>"
               "<Line DataName='V'/><Line DataName='B'/><RefLine Name='r' Value='1'/></Group></Groups>"
               "<Data>1,0\n2,1\n</Data></Analysis>");
    file.close();

    int failures = 0;
    for (bool failed = true; failed; failures += failed) {
        CGraphData data;
        Tracelyn::CXmlReader reader;
        g_allocationsLeft = failures;
        reader.ReadAnalysis(data, file.fileName());
        failed = g_allocationsLeft < 0;
        g_allocationsLeft = -1;
        ASSERT_EQ(reader.GetResults().size(), failed ? 1U : 0U) << "at allocation " << failures;
        if (failed) {
            EXPECT_EQ(reader.GetResults().front().GetText(), "Unknown error: Unknown exception");
        }
    }
    EXPECT_GT(failures, 20);
}
