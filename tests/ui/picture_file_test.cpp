#include "ui/picture_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <cmath>
#include <csignal>

namespace kelvane {
namespace {

constexpr Rgb kBlue{0, 0, 255};

bool DrawSine(QtSurface& surface)
{
    surface.Clear(kWhite);
    surface.FillRect({0, 200, 401, 1}, kBlack);
    surface.Text({{200, 100}}, "\u22121.5", kBlack);
    surface.SetLineWidth(2);
    PixelPoint last{0, 150};
    for (int i = 1; i <= 100000; ++i) {
        const PixelPoint next{i * 0.00401, 150 - 100 * std::sin(i * 0.0002)};
        surface.Line(last, next, kBlue);
        last = next;
    }
    return true;
}

QByteArray BytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

class PictureFile : public testing::Test {
protected:
    QString Path(const char* name) const { return m_directory.filePath(QString::fromLatin1(name)); }

    QByteArray Sine(const char* name) const
    {
        EXPECT_EQ(WritePicture({Path(name), {401, 303}}, DrawSine), PictureResult::Written) << name;
        return BytesOf(Path(name));
    }

    QStringList Files() const { return QDir(m_directory.path()).entryList(QDir::Files); }

private:
    QTemporaryDir m_directory;
};

TEST_F(PictureFile, FormatIsGuessedWrongly)
{
    const std::pair<const char*, std::optional<PictureFormat>> cases[] = {
        {"a.png", PictureFormat::Png},   {"/x.y/A.PNG", PictureFormat::Png},
        {"a.b.Svg", PictureFormat::Svg}, {"a.pdf", PictureFormat::Pdf},
        {"a.png.txt", std::nullopt},     {"png", std::nullopt},
        {"/a.png/b", std::nullopt},      {"", std::nullopt}};
    for (const auto& [path, format] : cases)
        EXPECT_EQ(PictureFormatOf(QString::fromLatin1(path)), format) << path;
}

TEST_F(PictureFile, PngHasAnotherSizeOrNoCurve)
{
    Sine("a.png");
    const QImage image(Path("a.png"));
    EXPECT_EQ(image.size(), QSize(401, 303));
    EXPECT_NEAR(image.dotsPerMeterX(), 96 / 0.0254, 1);
    EXPECT_EQ(image.pixelColor(300, 200), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(4, 280), QColor(Qt::white));
    const int crest = qRound(std::acos(-1.0) / 2 / 0.0002 * 0.00401); // 100 pixels above 150
    EXPECT_EQ(image.pixelColor(crest, 50), QColor(Qt::blue));
}

TEST_F(PictureFile, SvgIsMalformedOrHuge)
{
    const QByteArray svg = Sine("a.svg");
    EXPECT_LT(svg.size(), 20000); // every point would take more than a million
    QXmlStreamReader reader(svg);
    QString viewBox;
    QString title;
    int curves = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        EXPECT_NE(reader.name(), QLatin1String("text")) << "depends on the viewer's fonts";
        curves += reader.name() == QLatin1String("polyline") ? 1 : 0;
        if (reader.name() == QLatin1String("svg"))
            viewBox = reader.attributes().value(QLatin1String("viewBox")).toString();
        if (reader.name() == QLatin1String("title"))
            title = reader.readElementText();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_EQ(viewBox, QLatin1String("0 0 401 303"));
    EXPECT_EQ(title, QLatin1String("Kelvane"));
    EXPECT_EQ(curves, 1);
}

TEST_F(PictureFile, PdfPageIsNotThePicture)
{
    const QByteArray pdf = Sine("a.pdf");
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_LT(pdf.size(), 60000);
    EXPECT_FALSE(pdf.contains("/Subtype /Image")) << "the curve is not a curve any more";
    // 401 x 303 pixels are 300.75 x 227.25 points; Qt's page below is 228 points high.
    const QRegularExpression box(QStringLiteral(R"(/MediaBox \[(\S+) (\S+) (\S+) (\S+) *\])"));
    const auto match = box.match(QString::fromLatin1(pdf));
    ASSERT_TRUE(match.hasMatch());
    EXPECT_EQ(match.captured(3).toDouble() - match.captured(1).toDouble(), 300.75);
    EXPECT_EQ(match.captured(4).toDouble() - match.captured(2).toDouble(), 227.25);
    EXPECT_EQ(match.captured(4).toDouble(), 228);
    // The table of contents must still be where the file's end says.
    const qsizetype end = pdf.lastIndexOf("startxref");
    const qsizetype table = pdf.mid(end + 9).trimmed().split('\n').first().toLongLong();
    EXPECT_EQ(pdf.mid(table, 4), "xref");
}

// While one exists, no file may grow beyond so many bytes, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int) = nullptr;
};

TEST_F(PictureFile, OldFileIsSpoiled)
{
    for (const char* name : {"a.png", "a.svg", "a.pdf"}) {
        const QByteArray old = Sine(name);
        const QStringList files = Files();
        const auto giveUp = [](QtSurface& s) { return DrawSine(s) && false; };
        EXPECT_EQ(WritePicture({Path(name), {90, 90}}, giveUp), PictureResult::Abandoned) << name;
        EXPECT_EQ(BytesOf(Path(name)), old) << name << ", given up";
        {
            const FullDisk full(1000);
            EXPECT_EQ(WritePicture({Path(name), {400, 300}}, DrawSine), PictureResult::CannotWrite)
                << name;
        }
        EXPECT_EQ(BytesOf(Path(name)), old) << name << ", full disk";
        EXPECT_EQ(Files(), files) << name << " left something behind";
    }
}

TEST_F(PictureFile, ImpossibleOrderIsAccepted)
{
    const std::pair<const char*, PixelSize> cases[] = {
        {"missing/a.png", {90, 90}}, {"a.jpg", {90, 90}},    {"a.png", {0, 90}},
        {"a.svg", {90, -1}},         {"a.pdf", {1e300, 90}}, {"a.png", {90, 32768}}};
    for (const auto& [name, size] : cases) {
        EXPECT_EQ(WritePicture({Path(name), size}, DrawSine), PictureResult::CannotWrite)
            << name << ' ' << size.Width << " x " << size.Height;
        EXPECT_EQ(Files(), QStringList()) << name;
    }
}

} // namespace
} // namespace kelvane
