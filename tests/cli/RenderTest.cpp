// Which options change the picture, and how; what a frame looks like is tested where it is drawn.
#include "CliTesting.h"

#include <QColor>
#include <QImage>

#include <map>

namespace {

constexpr QRgb kBackground = qRgb(0, 0, 0);
constexpr QRgb kConsole = qRgb(0, 0, 64);
constexpr QRgb kCursor = qRgb(128, 128, 255);
constexpr QRgb kCurve = qRgb(0, 255, 0);
constexpr QRgb kFirstTwin = qRgb(255, 0, 0);
constexpr QRgb kSecondTwin = qRgb(0, 0, 255);

// A ramp over 200 samples in an expanded group, and two collapsed groups of one name.
QByteArray Ramp() {
    QByteArray rows;
    for (int i = 0; i < 200; ++i)
        rows += QByteArray::number(i) + "\n";
    return R"(<Analysis><DataDefinition><IndexSet Name="t"><Unit/></IndexSet><VariablesDefinitions>
        <TypedData Name="v" Type="Short"/><TypedData Name="red" Type="Short" Color="0000FF"/>
        <TypedData Name="blue" Type="Short" Color="FF0000"/></VariablesDefinitions></DataDefinition><Groups>
        <Group Name="Ramp" Expanded="1"><Line DataName="v"/></Group>
        <Group Name="Twin"><Line DataName="red"/></Group><Group Name="Twin"><Line DataName="blue"/></Group>
        </Groups><Data>)" +
           rows + "</Data></Analysis>";
}

int Count(const QImage& image, QRgb color, int left, int right) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = left; x < right; ++x)
            count += image.pixel(x, y) == color ? 1 : 0;
    }
    return count;
}

bool HasConsole(const QImage& image, bool left) {
    const int third = image.width() / 3;
    return Count(image, kConsole, left ? 0 : image.width() - third, left ? third : image.width()) > 500;
}

// The columns of that colour half way down, where there are only curves and cursors.
std::vector<int> Columns(const QImage& image, QRgb color) {
    std::vector<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixel(x, image.height() / 2) == color)
            columns.push_back(x);
    }
    return columns;
}

class CliRender : public Cli {
protected:
    // The picture of the ramp with these options, blanks between them.
    const QImage& Render(const QString& options) {
        const auto [at, isNew] = m_Pictures.try_emplace(options);
        if (isNew) {
            const QString out = Path("out.png");
            const QStringList arguments = options.split(" ", Qt::SkipEmptyParts) + QStringList{m_File, out};
            EXPECT_EQ(Run(QStringList{"render"} + arguments), (Outcome{0, "", ""})) << options.toStdString();
            EXPECT_TRUE(at->second.load(out, "PNG"));
        }
        return at->second;
    }

private:
    QString m_File = Write("ramp.xml", Ramp());
    std::map<QString, QImage> m_Pictures;
};

} // namespace

TEST_F(CliRender, PutsEverythingWhereTheOptionsSay) {
    const QImage& image = Render("");
    EXPECT_EQ(image.size(), QSize(1280, 720));
    EXPECT_EQ(image.pixel(600, 2), kBackground);
    EXPECT_TRUE(HasConsole(image, false) && !HasConsole(image, true));
    EXPECT_GT(Count(image, kCurve, 0, 640), 600);
    EXPECT_EQ(Count(image, kFirstTwin, 0, 640) + Count(image, kSecondTwin, 0, 640), 0);

    // Sample i stands at 1280 * i / 199, at zoom 4 from sample f on at 1280 * (i - f) / 49.75.
    for (const auto& [options, columns] : std::initializer_list<std::pair<const char*, std::vector<int>>>{
             {"", {636}},
             {"--cursor 50", {321}},
             {"--cursor=-7", {0}},
             {"--cursor 0", {0}},
             {"--zoom 4 --scroll 90", {231}},
             {"--zoom 4 --scroll 0", {}},
             {"--zoom=4 --cursor=60 --scroll=55", {128}}})
        EXPECT_EQ(Columns(Render(options), kCursor), columns) << options;
    EXPECT_EQ(Columns(Render("--fixed 20"), qRgb(64, 64, 128)), std::vector<int>{128});

    const QImage& light = Render("--scheme light --size 641x403 --fixed 20");
    EXPECT_EQ(light.size(), QSize(641, 403));
    EXPECT_EQ(light.pixel(400, 2), qRgb(240, 240, 250));
    EXPECT_EQ(Columns(light, qRgb(200, 200, 255)), std::vector<int>{64});

    EXPECT_TRUE(HasConsole(Render("--console left"), true));
    EXPECT_TRUE(HasConsole(Render("--cursor 190"), true)) << "the console moves out of the cursor's way";
    EXPECT_TRUE(HasConsole(Render("--console left --cursor 10"), false));
    EXPECT_TRUE(HasConsole(Render("--console right --cursor 190"), true));

    EXPECT_EQ(Count(Render("--toggle Ramp"), kCurve, 0, 640), 0);
    const QImage& twin = Render("--toggle Twin");
    EXPECT_GT(Count(twin, kFirstTwin, 0, 640), 600);
    EXPECT_EQ(Count(twin, kSecondTwin, 0, 640), 0);
}

TEST_F(CliRender, OptionsThatComeToTheSameGiveTheSamePicture) {
    const QString small = " --size 480x240";
    using Pairs = std::initializer_list<std::pair<const char*, const char*>>;
    for (const auto& [one, other] : Pairs{{"", "--size=480x240 --scheme=dark --console=right"},
                                          {"", "--cursor 99"},
                                          {"", "--fixed=-1"},
                                          {"", "--fixed=-9"},
                                          {"", "--zoom 1"},
                                          {"", "--zoom=-3"},
                                          {"", "--scroll 50"},
                                          {"", "--toggle Ramp --toggle Ramp"},
                                          {"", "--toggle t"},
                                          {"", "--code 47195"},
                                          {"--cursor 10000", "--cursor 199"},
                                          {"--fixed 10000", "--fixed 199"},
                                          {"--zoom 1000", "--zoom 40"},
                                          {"--zoom 4 --scroll=-1", "--zoom 4 --scroll 150"}})
        EXPECT_EQ(Render(one + small), Render(other + small)) << one << " and " << other;
    for (const auto& [one, other] : Pairs{{"", "--fixed 99"},
                                          {"", "--zoom 1.25"},
                                          {"--zoom 2", "--zoom 2.5"},
                                          {"--zoom 4", "--zoom 4 --scroll 70"}})
        EXPECT_NE(Render(one + small), Render(other + small)) << one << " and " << other;
}

TEST_F(CliRender, AlwaysDrawsAPictureOfTheSizeAskedFor) {
    EXPECT_EQ(Render("--size 1x1").size(), QSize(1, 1));
    EXPECT_EQ(Render("--size 16384x3").size(), QSize(16384, 3));

    const QString out = Path("empty.png");
    const QString broken = Write("broken.xml", "<Analysis");
    EXPECT_EQ(Run({"render", "--size=50x40", "--cursor=7", "--zoom=9", "--scroll=3", broken, out}).code, 3);
    const QImage image(out);
    EXPECT_EQ(image.size(), QSize(50, 40));
    EXPECT_EQ(Count(image, kBackground, 0, 50), 50 * 40);
}
