// Recordings beside the one of the process.
#include "Testing.h"
#include "reader/AnalysisFile.h"

#include <thread>

static std::vector<float> Values(const CGraphData& data) {
    std::vector<float> values;
    for (const auto& set : data.GetSets()) {
        const size_t size = values.size();
        values.resize(size + static_cast<size_t>(set->GetCount()));
        set->GetScaledValues(0, std::span(values).subspan(size));
    }
    return values;
}

TEST(Recording, KeepsItsSamplesWhateverIsLoadedBesideItAndAtTheSameTime) {
    const QDir samples(SAMPLES_DIR);
    const std::array paths{samples.filePath("bend.xml"), samples.filePath("bend01.paf"),
                           samples.filePath("bend02.paf")};
    std::array<CRecording, paths.size()> recordings;
    {
        std::vector<std::jthread> threads;
        for (size_t i = 0; i < paths.size(); ++i) {
            threads.emplace_back([&recording = recordings[i], &path = paths[i]] {
                for (int round = 0; round < 5; ++round)
                    EXPECT_TRUE(recording.Load(path, 1).results.empty());
            });
        }
    }
    for (size_t i = 0; i < paths.size(); ++i) {
        CGraphData data;
        LoadAnalysis(paths[i], 1, data);
        EXPECT_GT(Values(data).size(), 1000U);
        EXPECT_TRUE(Values(recordings[i].GetData()) == Values(data)) << i;
    }
}
