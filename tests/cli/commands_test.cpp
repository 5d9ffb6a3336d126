#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <random>
#include <sys/stat.h>

namespace {

struct Result {
    int Code = -1; // -1 when the program crashed or hung
    std::string Out;
    std::string Err;
};

// Runs kelvane as on a machine without display and locale.
Result Kelvane(const QStringList& arguments, const QString& output = {})
{
    QProcess process;
    QProcessEnvironment bare;
    for (const char* name : {"PATH", "HOME", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (qEnvironmentVariableIsSet(name))
            bare.insert(name, qEnvironmentVariable(name));
    }
    process.setProcessEnvironment(bare);
    if (!output.isEmpty())
        process.setStandardOutputFile(output);
    process.start(KELVANE_BINARY, arguments);
    Result result;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        result.Code = process.exitCode();
    result.Out = process.readAllStandardOutput().toStdString();
    result.Err = process.readAllStandardError().toStdString();
    return result;
}

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class Commands : public testing::Test {
protected:
    QString Path(const char* name) const { return m_folder.filePath(name); }

    // Draws with hard edges on a bare 100x100 sheet, 10 pixels a unit, and reads the picture.
    QImage Picture(const QStringList& arguments)
    {
        const QString path = Path("picture.png");
        const Result result = Kelvane(QStringList{"draw", "--size", "100x100", "--no-axes",
                                                  "--no-antialias", "--width", "1", "-o", path} +
                                      arguments);
        EXPECT_EQ(result.Code, 0) << result.Err;
        EXPECT_EQ(result.Out + result.Err, "");
        return QImage(path).convertToFormat(QImage::Format_RGB32);
    }

private:
    QTemporaryDir m_folder;
};

// The rows of a column that are not white, as "12 13 ".
std::string MarkedRows(const QImage& picture, int column)
{
    std::string rows;
    for (int row = 0; row < picture.height(); ++row) {
        if (picture.pixel(column, row) != 0xFFFFFFFF)
            rows += std::to_string(row) + " ";
    }
    return rows;
}

} // namespace

TEST_F(Commands, MessageOrExitCodeDiffers)
{
    struct Case {
        QStringList Arguments;
        int Code;
        std::string Out;
        std::string Err;
    };
    const Case cases[] = {
        {{"check", "y=x", "y=sinx"}, 0, "", ""},
        {{"check", "y=x", "y=(x"},
         1,
         "",
         "Error: Error in Equation 2: missing right parenthesis ')'\n"},
        {{"check", "y = x", "x=3"},
         1,
         "",
         "Error: Equation 2 does not begin with 'y=' and therefore requires Advanced calculations. "
         "Please enable Advaced 2D calculation using 'Complexity' button from 'Draw Menu'!\n"},
        {{"check"}, 2, "", "kelvane: check needs at least one equation\n"},
        {{"check", "y=x\ny=1"}, 2, "", "kelvane: an equation must be one line\n"},
        {{"check", "--", "-y=x"},
         1,
         "",
         "Error: Equation 1 does not begin with 'y=' and therefore requires Advanced calculations. "
         "Please enable Advaced 2D calculation using 'Complexity' button from 'Draw Menu'!\n"},
        {{"values", "--from", "-1", "--to", "1", "--step", "0.5", "y=1/x"},
         0,
         "x,y\n-1,-1\n-0.5,-2\n0,\n0.5,2\n1,1\n",
         ""},
        {{"values", "--from", "0.1", "--to", "0.3", "--step", "0.1", "y=x"},
         0,
         "x,y\n0.1,0.1\n0.2,0.2\n0.3,0.3\n",
         ""},
        {{"values", "--from", "1", "--to", "-1", "--step", "-1", "y=x^2"},
         0,
         "x,y\n1,1\n0,0\n-1,1\n",
         ""},
        {{"values", "--from", "0", "--to", "0", "--step", "1", "y=z"},
         1,
         "",
         "Error: Error in Equations number 1: Z variable is not allowed in 2D mode! Switch to 3D "
         "Graph (from Sheet Menu) and try again.\n"},
        {{"values", "--mode", "advanced", "--from", "3", "--to", "6", "--step", "1", "--search",
          "-8:8", "--resolution", "10", "x^2+y^2=25"},
         0,
         "x,y\n3,4\n4,3\n5,0\n6,\n",
         ""},
        {{"values", "--sheet", "3d", "--y", "3", "--from", "2", "--to", "3", "--step", "1", "z=xy"},
         0,
         "x,y,z\n2,3,6\n3,3,9\n",
         ""},
        {{"values", "--sheet", "3d", "--y", "3", "--mode", "advanced", "--search", "-8:8", "--from",
          "2", "--to", "2", "--step", "1", "xy=2z"},
         0,
         "x,y,z\n2,3,3\n",
         ""},
        {{"values", "--sheet", "3d", "--y", "3", "--from", "2", "--to", "3", "--step", "1", "y=x"},
         1,
         "",
         "Error: Equation number 1 does not begin with 'z=' and therefore requires Advanced "
         "calculations. Please enable Advaced 3D calculation using 'Complexity' button from 'Draw "
         "Menu'!\n"},
        {{"check", "--multi", "x=siny"}, 0, "", ""},
        {{"check", "--slope-mode", "x=siny"}, 0, "", ""},
        {{"check", "--slope-mode", "--mode", "simple", "x=1"},
         1,
         "",
         "Error: Equation 1 does not begin with 'y=' and therefore requires Advanced calculations. "
         "Please enable Advaced 2D calculation using 'Complexity' button from 'Draw Menu'!\n"},
        {{"values", "--from", "4", "--to", "9", "--step", "5", "y=x^1.5+x^.5-x^2."},
         0,
         "x,y\n4,-6\n9,-51\n", // 8 + 2 - 16 and 27 + 3 - 81
         ""},
        {{"check", "--mode", "advanced", "x=z"},
         1,
         "",
         "Error: Error in Equations number 1: Z variable is not allowed in 2D mode! Switch to 3D "
         "Graph (from Sheet Menu) and try again.\n"},
        {{"check", "-platform", "xcb", "y=x"},
         2,
         "",
         "kelvane: Unknown options: p, l, a, t, f, o, r, m.\n"},
        {{"check", "--style", "y=x"}, 2, "", "kelvane: Unknown option 'style'.\n"},
        {{"--version"}, 0, "kelvane 0.1.0\n", ""},
        {{"a.rtf"},
         2,
         "",
         "kelvane: there is no display to open a window on; see kelvane --help\n"},
        {{"text"}, 2, "", "kelvane: text needs an equation file\n"},
        {{"text", "/nowhere/a.rtf"}, 3, "", "kelvane: cannot open /nowhere/a.rtf\n"},
        {{"check", "/nowhere/b.RTF"}, 3, "", "kelvane: cannot open /nowhere/b.RTF\n"},
        {{"paint"}, 2, "", "kelvane: unknown command 'paint'; see kelvane --help\n"},
    };
    for (const Case& c : cases) {
        const Result result = Kelvane(c.Arguments);
        const std::string name = c.Arguments.join(' ').toStdString();
        EXPECT_EQ(result.Code, c.Code) << name;
        EXPECT_EQ(result.Out, c.Out) << name;
        EXPECT_EQ(result.Err, c.Err) << name;
    }
    for (const QStringList& help :
         {QStringList{}, {"--help"}, {"draw", "--help"}, {"values", "-h"}, {"check", "--help"}}) {
        const Result result = Kelvane(help);
        EXPECT_EQ(result.Code, 0) << help.join(' ').toStdString();
        EXPECT_NE(result.Out.find("Usage:"), std::string::npos) << help.join(' ').toStdString();
        EXPECT_EQ(result.Err, "");
    }
}

TEST_F(Commands, WrongUsageIsAcceptedOrWritesAFile)
{
    const QString target = Path("a.png");
    const QStringList wrong[] = {
        {"draw", "y=x"},
        {"draw", "-o", Path("a.bmp"), "y=x"},
        {"draw", "-o", target},
        {"draw", "-o", target, "--size", "0x10", "y=x"},
        {"draw", "-o", target, "--size", "20000x20000", "y=x"},
        {"draw", "-o", target, "--size", "10", "y=x"},
        {"draw", "-o", target, "--range", "1:0,0:1", "y=x"},
        {"draw", "-o", target, "--range", "0:1", "y=x"},
        {"draw", "-o", target, "--range", "0:nan,0:1", "y=x"},
        {"draw", "-o", target, "--range", "0:1,0:1,3", "y=x"},
        {"draw", "-o", target, "--zoom", "0", "y=x"},
        {"draw", "-o", target, "--zoom", "1e-60", "y=x"},
        {"draw", "-o", target, "--zoom", "1e38", "y=x"},
        {"draw", "-o", target, "--centre", "1", "y=x"},
        {"draw", "-o", target, "--centre", "1e60,0", "y=x"},
        {"draw", "-o", target, "--resolution", "-5", "y=x"},
        {"draw", "-o", target, "--width", "0", "y=x"},
        {"draw", "-o", target, "--color", "12345g", "y=x"},
        {"draw", "-o", target, "--colour", "123456", "y=x"},
        {"values", "--from", "0", "--to", "1", "y=x"},
        {"values", "--from", "0", "--to", "1", "--step", "-1", "y=x"},
        {"values", "--from", "0", "--to", "1", "--step", "1e-9", "y=x"},
        {"values", "--from", "0", "--to", "1", "--step", "1", "y=x", "y=x"},
        {"values", "--from", "0", "--to", "1", "--step", "1", "--sheet", "3d", "z=x"},
        {"values", "--from", "0", "--to", "1", "--step", "1", "--y", "2", "y=x"},
        {"values", "--from", "0", "--to", "1", "--step", "1", "--search", "2:1", "y=x"},
        {"values", "--from", "0", "--to", "1", "--step", "1", "--resolution", "0", "y=x"},
        {"draw", "-o", target, "--mode", "Advanced", "y=x"},
        {"draw", "-o", target, "--sheet-color", "white", "y=x"},
        {"draw", "-o", target, "--colors", "blue", "y=x"},
        {"draw", "-o", target, "--colors", "solid", "--gradient", "x", "y=x"},
        {"draw", "-o", target, "--gradient", "z", "y=x"},
        {"draw", "-o", target, "--rotate", "ninety", "y=x"},
        {"draw", "-o", target, "--rotate", "1,2", "y=x"},
        {"draw", "-o", target, "--matrix", "1,0,0", "y=x"},
        {"draw", "-o", target, "--matrix", "1,0,0,1e999", "y=x"},
        {"draw", "-o", target, "--sheet", "4d", "y=x"},
        {"draw", "-o", target, "--sheet", "3d", "--axis-model", "real:0"},
        {"draw", "-o", target, "--axis-model", "flat", "y=x"},
        {"check", "--mode", "simple", "--double", "y=x"},
        {"draw", "-o", target, "--slope-mode", "--budget", "0", "y=x"},
        {"draw", "-o", target, "--slope-mode", "--budget", "3600001", "y=x"},
        {"draw", "-o", target, "--slope-mode", "--budget", "2s", "y=x"},
        {"new", target, "y=x"},
        {"new"},
        {"new", Path("a.rtf"), "y=x\ny=1"},
        {"new", Path("a.rtf"), QString(4001, 'x')},
    };
    for (const QStringList& arguments : wrong) {
        const Result result = Kelvane(arguments);
        const std::string name = arguments.join(' ').toStdString();
        EXPECT_EQ(result.Code, 2) << name;
        EXPECT_EQ(std::count(result.Err.begin(), result.Err.end(), '\n'), 1) << result.Err;
        EXPECT_EQ(result.Out, "") << name;
        EXPECT_FALSE(QFile::exists(target)) << name;
    }
}

TEST_F(Commands, RefusedOrFailedDrawTouchesTheFile)
{
    const QString target = Path("a.svg");
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("precious");
    file.close();
    EXPECT_EQ(Kelvane({"draw", "y=x", "x=3", "-o", target}).Code, 1);
    EXPECT_EQ(Content(target), "precious");
    EXPECT_EQ(Kelvane({"draw", "y=(", "-o", Path("b.pdf")}).Code, 1);
    EXPECT_FALSE(QFile::exists(Path("b.pdf")));
    EXPECT_EQ(Kelvane({"draw", "y=(", "-o", "/nowhere/a.png"}).Code, 1) << "equations come first";
    const QString pipe = Path("pipe.png");
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    ASSERT_TRUE(QFile::link(pipe, Path("link.png")));
    EXPECT_EQ(Kelvane({"draw", "y=x", "-o", pipe}).Code, 3);
    EXPECT_EQ(Kelvane({"draw", "y=x", "-o", Path("link.png")}).Code, 3);
    EXPECT_FALSE(QFileInfo(pipe).isFile()) << "a pipe was replaced by a picture";
    for (const char* format : {"png", "svg", "pdf"}) {
        const Result result = Kelvane({"draw", "y=x", "-o", QString("/nowhere/a.") + format});
        EXPECT_EQ(result.Code, 3) << format;
        EXPECT_EQ(result.Err, std::string("kelvane: cannot write /nowhere/a.") + format + "\n");
    }
    const Result full =
        Kelvane({"values", "--from", "0", "--to", "9", "--step", "1", "y=x"}, "/dev/full");
    EXPECT_EQ(full.Code, 3) << full.Err;
    EXPECT_EQ(Kelvane({"draw", "y=x", "-o", target}).Code, 0);
    EXPECT_EQ(Content(target).left(5), "<?xml");
}

TEST_F(Commands, PictureDiffersFromItsOptions)
{
    const QStringList ten{"--range", "0:10,0:10"};
    const QImage plain = Picture(ten + QStringList{"--color", "FF8000", "y=2.5"});
    EXPECT_EQ(plain.size(), QSize(100, 100));
    EXPECT_EQ(MarkedRows(plain, 50), "75 ");
    EXPECT_EQ(plain.pixel(50, 75), 0xFFFF8000);
    // Zoomed out twice, x = 50/10*2 = 10 at the middle of the picture: 10 lies 5 rows of 10 pixels
    // high.
    EXPECT_EQ(MarkedRows(Picture(ten + QStringList{"--zoom", "2", "y=5"}), 50), "75 ");
    EXPECT_EQ(MarkedRows(Picture(ten + QStringList{"--centre", "3,-2", "y=2.5"}), 50), "55 ");
    EXPECT_EQ(MarkedRows(Picture(ten + QStringList{"--width", "3", "y=2.5"}), 50), "74 75 76 ");
    const QImage dots = Picture(ten + QStringList{"--pixels", "--resolution", "1", "y=2.5"});
    EXPECT_EQ(MarkedRows(dots, 50), "75 ");
    EXPECT_EQ(MarkedRows(dots, 55), "");
    const QStringList circle{"--range", "-5:5,-5:5", "--resolution", "10", "x^2+y^2=9"};
    EXPECT_EQ(MarkedRows(Picture(circle + QStringList{"--mode", "advanced"}), 50), "20 ");
    EXPECT_EQ(MarkedRows(Picture(circle + QStringList{"--double"}), 50), "20 80 ");
    EXPECT_EQ(MarkedRows(Picture(circle + QStringList{"--double", "--multi"}), 50), "20 80 ");
    const QStringList complete = circle + QStringList{"--slope-mode"};
    const QImage whole = Picture(complete);
    EXPECT_EQ(MarkedRows(whole, 50), "20 80 ");
    EXPECT_EQ(Picture(complete + QStringList{"--double", "--multi"}), whole);
    const QImage hatched = Picture(complete + QStringList{"--double", "--budget", "1e-6"});
    EXPECT_NE(hatched.pixel(50, 20), 0xFFFFFFFF) << "what is unknown stays white";
    EXPECT_NE(hatched, whole);
    const QStringList wave{"--range", "-5:5,-5:5", "x=4sin(1.0472y)"};
    EXPECT_EQ(Picture(wave + QStringList{"--mode", "advanced"}).pixel(70, 85), 0xFFFFFFFF);
    EXPECT_NE(Picture(wave + QStringList{"--multi"}).pixel(70, 85), 0xFFFFFFFF);
    const QStringList square{"--range", "-5:5,-5:5", "--color", "000000"};
    const QImage upright = Picture(square + QStringList{"--rotate", "90", "y=2"});
    EXPECT_EQ(MarkedRows(upright, 50), "");
    EXPECT_EQ(upright.pixel(30, 5), 0xFF000000);
    EXPECT_EQ(upright.pixel(30, 95), 0xFF000000);
    EXPECT_EQ(MarkedRows(Picture(square + QStringList{"--matrix", "1,0,0,2", "y=1"}), 50), "30 ");
    EXPECT_EQ(MarkedRows(Picture(square + QStringList{"--matrix", "1,2,0,1", "y=1"}), 10), "")
        << "sheared to the right by 2";
    const QImage dark = Picture(square + QStringList{"--sheet-color", "203040", "y=9"});
    EXPECT_EQ(dark.pixel(3, 3), 0xFF203040);
    const QImage shaded =
        Picture({"--range", "-5:5,-5:5", "--from-color", "000000", "--to-color", "FF0000", "y=0"});
    EXPECT_LT(qRed(shaded.pixel(10, 50)), 40);
    EXPECT_NEAR(qRed(shaded.pixel(50, 50)), 128, 30);
    EXPECT_GT(qRed(shaded.pixel(90, 50)), 215);
    const QString space = Path("space.png");
    ASSERT_EQ(Kelvane({"draw", "--sheet", "3d", "--axis-model", "simple", "-o", space}).Code, 0);
    const QImage axes = QImage(space).convertToFormat(QImage::Format_RGB32);
    EXPECT_NE(MarkedRows(axes, 500), "") << "the z axis";
    EXPECT_EQ(Kelvane({"draw", "--sheet", "3d", "z=(x", "-o", space}).Code, 1);
    const QImage stretched = Picture({"--range", "0:10,0:100", "y=x^2"});
    EXPECT_EQ(MarkedRows(stretched, 50), "75 ");
    const QImage two = Picture(ten + QStringList{"y=2.5", "y=7.5"});
    EXPECT_EQ(two.pixel(50, 75), 0xFF0000FF) << "several equations take the palette's colours";
    EXPECT_EQ(two.pixel(50, 25), 0xFF800000);
    const QString framed = Path("framed.png");
    ASSERT_EQ(Kelvane({"draw", "y=9", "--grid", "-o", framed}).Code, 0);
    const QImage sheet = QImage(framed).convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(sheet.size(), QSize(1000, 800));
    EXPECT_EQ(sheet.pixel(500, 20), 0xFF000000) << "axis"; // in the middle of 20 units
    EXPECT_EQ(sheet.pixel(600, 20), 0xFFC8C8C8) << "grid";
    EXPECT_EQ(sheet.pixel(550, 20), 0xFFFFFFFF);
}

TEST_F(Commands, EquationFileIsOtherThanItsLines)
{
    const QString file = Path("a.rtf");
    const QStringList lines{"y=x^(2)+p", "y=2.5", "x={\\}^(\u03b1)", "y=e^x"};
    EXPECT_EQ(Kelvane(QStringList{"new", file, "--"} + lines).Code, 0);
    EXPECT_EQ(Kelvane({"text", file}).Out, lines.join('\n').toStdString() + "\n");
    EXPECT_EQ(Kelvane({"check", file}).Err.substr(0, 26), "Error: Equation 3 does not");
    EXPECT_EQ(Kelvane({"new", file, "y=2.5", "y=7.5"}).Code, 0) << "in place of the old one";
    const QImage drawn = Picture({"--range", "0:10,0:10", file, "y=5"});
    EXPECT_EQ(MarkedRows(drawn, 50), "25 50 75 ");
    QFile damaged(file);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.resize(damaged.size() - 3);
    damaged.close();
    for (const char* command : {"text", "check"}) {
        const Result result = Kelvane({command, file});
        EXPECT_EQ(result.Code, 3) << command;
        EXPECT_EQ(result.Err,
                  "kelvane: " + file.toStdString() + " is not an equation file, or damaged\n");
    }
}

TEST_F(Commands, KilledSaveLeavesHalfAFile)
{
    const QString file = Path("a.rtf");
    QStringList many{"new", file};
    for (int i = 0; i < 1000; ++i)
        many += "y=" + QString(200, 'x');
    const QStringList versions[] = {many, {"new", file, "y=1"}};
    QByteArray contents[2];
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(Kelvane(versions[i]).Code, 0);
        contents[i] = Content(file);
    }
    std::minstd_rand random(20261121); // NOLINT(cert-msc51-cpp): the same moments in every run
    int replaced = 0;
    for (int i = 0; i < 200; ++i) {
        QProcess process;
        process.start(KELVANE_BINARY, versions[i % 2]);
        process.waitForStarted();
        QThread::usleep(random() % 20000);
        process.kill();
        process.waitForFinished();
        const QByteArray now = Content(file);
        ASSERT_TRUE(now == contents[0] || now == contents[1]) << "kill " << i;
        replaced += now == contents[i % 2] ? 1 : 0;
    }
    EXPECT_GT(replaced, 0);
}

TEST_F(Commands, StatsAreMissingOrMiscounted)
{
    const Result result =
        Kelvane({"draw", "--stats", "-o", Path("a.png"), "y=log(x)", "y=x-x^2+2sinx"});
    EXPECT_EQ(result.Code, 0);
    const QRegularExpression line("\\Asamples: 4002, compiled: 4002, points: [0-9]+, failed: 1001, "
                                  "prepare: [0-9.]+ ms, sweep: [0-9.]+ ms, "
                                  "paint: [0-9.]+ ms\n\\z");
    EXPECT_TRUE(line.match(QString::fromStdString(result.Err)).hasMatch()) << result.Err;
    for (const auto& [budget, count] : {std::pair("2000", "0"), std::pair("1e-6", "[1-9][0-9]*")}) {
        const Result complete = Kelvane(
            {"draw", "--stats", "-o", Path("a.png"), "--slope-mode", "--budget", budget, "y=1/x"});
        const QRegularExpression end(QString(" ms, unresolved: %1 px\n\\z").arg(count));
        EXPECT_TRUE(end.match(QString::fromStdString(complete.Err)).hasMatch()) << complete.Err;
    }
    const QStringList small{"draw", "--stats", "-o", Path("a.png"), "y=x", "--range"};
    EXPECT_EQ(Kelvane(small + QStringList{"0:.01,0:1"}).Err.rfind("samples: 251,", 0), 0U);
    EXPECT_EQ(Kelvane(small + QStringList{"0:5,0:1"}).Err.rfind("samples: 501,", 0), 0U);
}

TEST_F(Commands, StrangeTextCrashesOrHangs)
{
    QByteArray allBytes;
    for (int i = 1; i < 256; ++i) {
        if (i != '\n' && i != '\r')
            allBytes += static_cast<char>(i);
    }
    const QString strange[] = {
        "",
        "y=",
        "=",
        "^",
        "y=" + QString(100000, '('),
        "y=" + QString(900, '(') + "x" + QString(900, ')'),
        "y=" + QString(100000, '^'),
        QString::fromLatin1(allBytes),
        "y=" + QString(QChar(0xD800)) + "x",
        QString(QChar(0xDFFF)),
        "y=x" + QString(QChar(0x2212)) + "1",
    };
    QStringList many{"check"};
    for (int i = 0; i < 800; ++i)
        many += "y=x";
    EXPECT_EQ(Kelvane(many).Code, 1);
    for (const QString& text : strange) {
        const Result result = Kelvane({"draw", "-o", Path("a.png"), "--", text});
        const std::string name = text.left(40).toStdString();
        EXPECT_TRUE(result.Code == 0 || result.Code == 1) << name << ": " << result.Code;
        EXPECT_EQ(result.Code == 1, !result.Err.empty()) << name << result.Err;
    }
}
