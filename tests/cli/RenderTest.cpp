// Which options change the picture, and how; what a frame looks like is tested where it is drawn.
#include "CliTesting.h"

#include <QImage>

namespace {

constexpr QRgb kCurve = qRgb(0, 255, 0);

// A ramp over 200 samples in an expanded group, which has the name of the axis.
QByteArray Ramp() {
    QByteArray rows;
    for (int i = 0; i < 200; ++i)
        rows += QByteArray::number(i) + "\n";
    return R"(<Analysis><DataDefinition><IndexSet Name="Ramp"><Unit/></IndexSet><VariablesDefinitions>
        <TypedData Name="v" Type="Short"/></VariablesDefinitions></DataDefinition><Groups>
        <Group Name="Ramp" Expanded="1"><Line DataName="v"/></Group></Groups><Data>)" +
           rows + "</Data></Analysis>";
}

int Count(const QImage& image, QRgb color, int left, int right) {
    int count = 0;
    for (int at = 0; at < (right - left) * image.height(); ++at)
        count += image.pixel(left + at % (right - left), at / (right - left)) == color ? 1 : 0;
    return count;
}

bool HasConsole(const QImage& image, bool left) {
    const int third = image.width() / 3;
    return Count(image, qRgb(0, 0, 64), left ? 0 : 2 * third, left ? third : 3 * third) > 500;
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
    QImage Render(const QString& options) { return QImage(Draw(options, "out.png"), "PNG"); }
    // Returns the path.
    QString Draw(const QString& options, const QString& name) {
        const QString out = Path(name);
        const QStringList arguments = options.split(" ", Qt::SkipEmptyParts) + QStringList{m_File, out};
        EXPECT_EQ(Run(QStringList{"render"} + arguments), (Outcome{0, "", ""})) << options.toStdString();
        return out;
    }

private:
    QString m_File = Write("ramp.xml", Ramp());
};

} // namespace

TEST_F(CliRender, PutsEverythingWhereTheOptionsSay) {
    const QImage image = Render("");
    EXPECT_EQ(image.size(), QSize(1280, 720));
    EXPECT_EQ(image.pixel(600, 2), qRgb(0, 0, 0));
    EXPECT_TRUE(HasConsole(image, false) && !HasConsole(image, true));
    EXPECT_GT(Count(image, kCurve, 0, 640), 600);

    // Sample i stands at 1280 * i / 199, at zoom 4 from sample f on at 1280 * (i - f) / 49.75.
    using Case = std::pair<const char*, std::vector<int>>;
    for (const auto& [options, columns] :
         {Case{"", {636}}, Case{"--cursor 50", {321}}, Case{"--cursor=-7", {0}},
          Case{"--zoom 4 --scroll 90", {231}}, Case{"--zoom 4 --scroll 0", {}},
          Case{"--zoom=4 --cursor=60 --scroll=55", {128}}})
        EXPECT_EQ(Columns(Render(options), qRgb(128, 128, 255)), columns) << options;
    EXPECT_EQ(Columns(Render("--fixed 20"), qRgb(64, 64, 128)), std::vector<int>{128});

    const QImage light = Render("--scheme light --size 641x403 --fixed 20");
    EXPECT_EQ(light.size(), QSize(641, 403));
    EXPECT_EQ(light.pixel(400, 2), qRgb(240, 240, 250));
    EXPECT_EQ(Columns(light, qRgb(200, 200, 255)), std::vector<int>{64});

    EXPECT_TRUE(HasConsole(Render("--console left"), true));
    const QImage without = Render("--console none");
    EXPECT_FALSE(HasConsole(without, true) || HasConsole(without, false));
    EXPECT_GT(Count(without, kCurve, 640, 1280), 600) << "the curve goes on where the console was";
    EXPECT_TRUE(HasConsole(Render("--cursor 190"), true)) << "the console moves out of the cursor's way";

    EXPECT_EQ(Count(Render("--toggle Ramp"), kCurve, 0, 640), 0);
}

TEST_F(CliRender, TakesTheFormatFromTheExtension) {
    using Case = std::pair<const char*, const char*>; // name, what its contents begin with
    for (const auto& [name, begin] :
         {Case{"a.svg", "<?xml"}, Case{"a.SVG", "<?xml"}, Case{"a.pdf", "%PDF"}, Case{"svg", "\x89PNG"},
          Case{"a.svg.txt", "\x89PNG"}, Case{"a.PNG", "\x89PNG"}})
        EXPECT_TRUE(Read(Draw("", name)).startsWith(begin)) << name;
}

TEST_F(CliRender, LimitsWhatIsOutOfRange) {
    using Pair = std::pair<const char*, const char*>;
    for (const auto& [one, other] :
         {Pair{"", "--fixed=-9"}, Pair{"", "--zoom=-3"}, Pair{"", "--scroll 50"},
          Pair{"", "--toggle Ramp --toggle Ramp"}, Pair{"--cursor 10000", "--cursor 199"},
          Pair{"--fixed 10000", "--fixed 199"}, Pair{"--zoom 1000", "--zoom 40"}})
        EXPECT_EQ(Render(QString("--size 480x240 ") + one), Render(QString("--size 480x240 ") + other))
            << one << " and " << other;
}

TEST_F(Cli, DrawsSeveralFilesIntoAFolder) {
    const QString good = Sample("bend01.paf");
    const QStringList view{"render", "--zoom=3", "--events", "--compare", good};
    ASSERT_TRUE(QDir(Folder()).mkdir("pictures"));
    const QString folder = Path("pictures");
    const QStringList into = view + QStringList{"--out", folder};
    const QString missing = Path("missing.xml");
    const QString other = TestData("eight_types.xml");
    EXPECT_EQ(Run(into + QStringList{Sample("bend02.paf"), missing, other, Sample("bend03.paf")}),
              (Outcome{3, "",
                       ("ERROR: Cannot read file: " + missing + "\nERROR: " + other +
                        ": no signal is also in " + good + "\n")
                           .toStdString()}));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), (QStringList{"bend02.png", "bend03.png"}));
    for (const char* const name : {"bend02", "bend03"}) {
        const QString alone = Path("alone.png");
        ASSERT_EQ(Run(view + QStringList{Sample((std::string(name) + ".paf").c_str()), alone}).code, 0);
        EXPECT_TRUE(Read(folder + '/' + name + ".png") == Read(alone)) << name;
    }
    EXPECT_EQ(Run({"render", "--out", folder, "--format", "svg", other}), (Outcome{0, "", ""}));
    EXPECT_TRUE(Read(folder + "/eight_types.svg").startsWith("<?xml"));

    // Nothing is written then.
    const QString twin = Write("BEND02.xml", Read(other));
    const QString linked = folder + "/linked.png";
    const QString source = Write("linked.xml", Read(other));
    ASSERT_TRUE(LinkTo(source, linked));
    const QStringList before = QDir(folder).entryList();
    using Case = std::tuple<int, QStringList, QString>; // with how the error begins
    for (const auto& [code, arguments, error] :
         {Case{1, {missing}, "ERROR: Cannot read file: "}, Case{2, {}, "tracelyn-cli: render --out takes 1 "},
          Case{2, {Sample("bend02.paf"), twin}, "tracelyn-cli: '" + Sample("bend02.paf") + "' and '" + twin},
          Case{2, {Sample("bend04.paf"), good}, "tracelyn-cli: '" + good + "' is the recording itself"},
          Case{2, {Sample("bend04.paf"), source}, "tracelyn-cli: '" + linked + "' is the file to read, "}}) {
        const Outcome outcome = Run(into + arguments);
        EXPECT_EQ(outcome.code, code);
        EXPECT_EQ(outcome.err.find(error.toStdString()), 0U) << outcome.err;
    }
    EXPECT_EQ(QDir(folder).entryList(), before);
    EXPECT_EQ(Run({"render", "--out", missing, other}).code, 1) << "no folder";
    EXPECT_EQ(Run({"render", "--format", "png", other, missing}).code, 2) << "no --out";
}
