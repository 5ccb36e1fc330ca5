// Recordings as a program uses them that has many of them open.
#include "tracelyn/Recording.h"
#include "Testing.h"

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
                    EXPECT_TRUE(recording.Load(path, 1) && recording.GetProblems().empty());
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

TEST(Recording, GivesTheSamplesOfTheFileInTheirTypes) {
    CRecording recording;
    ASSERT_TRUE(recording.Load(QStringLiteral(TEST_DATA_DIR "/eight_types.xml"), 3));
    std::set<size_t> kinds;
    for (const auto& set : recording.GetData().GetSets()) {
        const SampleSpan samples = set->GetSamples();
        kinds.insert(samples.index());
        const auto look = [&]<class Samples>(const Samples& all) {
            if constexpr (std::is_same_v<Samples, std::monostate>) {
                EXPECT_EQ(set->GetStore(), nullptr);
            } else {
                ASSERT_EQ(std::ssize(all), set->GetCount());
                for (int i = 0; i < set->GetCount(); ++i)
                    EXPECT_EQ(std::bit_cast<uint64_t>(double(all[size_t(i)])),
                              std::bit_cast<uint64_t>(set->GetValue(i, kNoReference)));
            }
        };
        std::visit(look, samples);
    }
    EXPECT_EQ(kinds.size(), std::variant_size_v<SampleSpan>);
}

TEST(Recording, IsReadByManyThreadsAtOnceAlsoWhenItsLoadWasStopped) {
    for (const double part : {2.0, 0.95}) { // the whole, and without the index that a load makes at its end
        CRecording recording;
        bool isStopped = false;
        const auto stop = [&](double done) { return !(isStopped = isStopped || done > part); };
        EXPECT_TRUE(recording.Load(QStringLiteral(SAMPLES_DIR "/bend.xml"), 3, stop));
        EXPECT_EQ(isStopped, part < 1);
        EXPECT_TRUE(recording.GetProblems().empty());
        const CGraphData& data = recording.GetData();
        const auto look = [&data](int thread) {
            double sum = 0;
            for (int round = 0; round < 3; ++round) {
                for (const auto& set : data.GetSets()) {
                    const int count = set->GetCount();
                    const MinMax all = set->GetMinMax(0, count);
                    EXPECT_GE(set->GetMinMax(thread, count).min, all.min);
                    std::array<SampleSummary, 1> summary{};
                    set->Summarize(std::array{0, count}, summary);
                    sum += double(all.max) - double(all.min) + double(summary[0].last);
                }
            }
            return sum;
        };
        std::array<double, 4> sums{};
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < std::ssize(sums); ++i)
                threads.emplace_back([&, i] { sums[size_t(i)] = look(i); });
        }
        for (const double sum : sums)
            EXPECT_EQ(sum, look(0));
    }
}

TEST(Recording, SaysWhyItHasNothingToShowAndIsEmptyThen) {
    const TestFolder folder;
    const QString damaged = folder.Write("damaged.paf", "PK");
    const QString text = folder.Write("notes.txt", "x");
    const QString broken = folder.Write("broken.xml", "<Analysis>");
    const QString missing = folder.Path("missing.xml");
    const QString sound = QStringLiteral(SAMPLES_DIR "/bend01.paf");
    CRecording recording;
    EXPECT_FALSE(recording.IsRead());
    const auto reason = [&](const QString& path, const support::Progress& progress = {}) {
        EXPECT_TRUE(recording.Load(sound) && recording.GetReason().isEmpty());
        EXPECT_FALSE(recording.GetName().isEmpty());
        EXPECT_FALSE(recording.Load(path, 0, progress));
        EXPECT_FALSE(recording.IsRead() || recording.GetData().HasData());
        return recording.GetReason();
    };
    EXPECT_EQ(reason(damaged), "Problem expanding analysis file: " + damaged + " is damaged or no container");
    EXPECT_EQ(reason(text), "Unknown file extension: " + text);
    EXPECT_EQ(reason(missing), "Cannot read file: " + missing);
    EXPECT_EQ(reason(sound, [](double) { return false; }), "Reading was stopped: " + sound);
    EXPECT_TRUE(reason(broken).startsWith(broken + ": Xml Parse error: ")) << qPrintable(reason(broken));
    EXPECT_TRUE(recording.IsDocumentRead());
    EXPECT_EQ(recording.GetProblems().size(), 1U);
}
