#include "cli/look_options.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "cli/arguments.h"
#include "view3d/matrix_setup.h"
#include "view3d/rotation.h"

namespace kelvane {

namespace {

// Each of the following reads a group of options; the text says what is wrong, if anything.

QString ReadColorOption(const QCommandLineParser& parser, const char* name, Rgb& color)
{
    if (!parser.isSet(name))
        return {};
    const auto read = ReadColor(parser.value(name));
    if (!read)
        return QString("--%1 needs six hexadecimal digits RRGGBB, such as 0050C0").arg(name);
    color = *read;
    return {};
}

QString ReadColors(const QCommandLineParser& parser, SharedState& state)
{
    DrawSettings& settings = state.Settings;
    for (const auto& [name, color] : {std::pair("color", &settings.SolidColor),
                                      {"sheet-color", &settings.SheetColor},
                                      {"from-color", &settings.GradientFrom},
                                      {"to-color", &settings.GradientTo}}) {
        if (QString wrong = ReadColorOption(parser, name, *color); !wrong.isEmpty())
            return wrong;
    }
    const bool gradual =
        parser.isSet("gradient") || parser.isSet("from-color") || parser.isSet("to-color");
    const QString colors =
        parser.isSet("colors") ? parser.value("colors") : QString(gradual ? "gradual" : "solid");
    if (colors != "solid" && colors != "random" && colors != "gradual")
        return "--colors needs solid, random or gradual";
    if (gradual && colors != "gradual")
        return "--gradient, --from-color and --to-color need --colors gradual";
    if (colors == "gradual")
        settings.Coloring = Coloring2D::Gradual;
    else
        settings.Coloring = colors == "random" ? Coloring2D::Random : Coloring2D::Solid;
    const QString along = parser.isSet("gradient") ? parser.value("gradient") : "x";
    if (along != "x" && along != "y")
        return "--gradient needs x or y";
    settings.GradientAlong = along == "x" ? GradientAxis::X : GradientAxis::Y;
    return {};
}

QString ReadSheetKind(const QCommandLineParser& parser, SharedState& state)
{
    const QString sheet = parser.isSet("sheet") ? parser.value("sheet") : "2d";
    if (sheet != "2d" && sheet != "3d")
        return "--sheet needs 2d or 3d";
    state.Modes.Mode3D = sheet == "3d";
    const QString model = parser.isSet("axis-model") ? parser.value("axis-model") : "real:45";
    if (model == "simple") {
        state.Axis3D.RealWorldAxis = false;
        return {};
    }
    const auto angle = model.startsWith("real:") ? HalfAngleOf(model.mid(5).toStdString())
                                                 : std::optional<std::int16_t>();
    if (!angle)
        return QString("--axis-model needs simple or real:ANGLE, an angle from %1 to %2 degrees")
            .arg(kMinAxisAngle)
            .arg(kMaxAxisAngle);
    state.Axis3D.Axis3DHalfAngle = *angle;
    return {};
}

QString ReadTransform(const QCommandLineParser& parser, SharedState& state)
{
    const Dimensions sheet = state.Modes.Mode3D ? Dimensions::Three : Dimensions::Two;
    if (parser.isSet("rotate")) {
        const QStringList angles = parser.value("rotate").split(',');
        const bool right = angles.size() == 1 || (angles.size() == 2 && state.Modes.Mode3D);
        if (!right || Rotate(state.ViewMatrix, angles[0].toStdString(),
                             angles.value(1, "0").toStdString(), sheet))
            return "--rotate needs degrees, such as 30; on a 3D sheet 30,20 turns about z and y";
    }
    if (!parser.isSet("matrix"))
        return {};
    std::vector<std::string> rows;
    for (const QString& entry : parser.value("matrix").split(','))
        rows.push_back(entry.toStdString());
    // The boxes of the matrix dialog go down the columns.
    if (rows.size() != 4 ||
        MatrixSetup(state.ViewMatrix, Dimensions::Two)
            .Apply(MatrixOperation::Multiply, std::vector{rows[0], rows[2], rows[1], rows[3]}))
        return "--matrix needs m0,m1,m3,m4, such as 1,0.5,0,1";
    return {};
}

} // namespace

void AddLookOptions(QCommandLineParser& parser)
{
    parser.addOptions({
        {"color", "Draw all curves in this colour; otherwise several curves differ.", "RRGGBB"},
        {"colors", "One colour, the palette's in turn, or changing along each curve.",
         "solid|random|gradual"},
        {"gradient", "Gradual colours change along this axis; x if not given.", "x|y"},
        {"from-color", "Gradual: the colour at the left or lower end of the range.", "RRGGBB"},
        {"to-color", "Gradual: the colour at the other end.", "RRGGBB"},
        {"sheet-color", "The colour behind it all; white if not given.", "RRGGBB"},
        {"rotate", "Turn the curves about the axes' crossing; on a 3D sheet about z and y.",
         "DEG[,DEG]"},
        {"matrix", "Transform the curves, after the turn: (m0 m1; m3 m4).", "m0,m1,m3,m4"},
        {"sheet", "2d if not given; a 3d sheet shows its axes.", "2d|3d"},
        {"axis-model", "How a 3D sheet lies; real:45 if not given.", "real:ANGLE|simple"},
    });
}

QString ReadLook(const QCommandLineParser& parser, SharedState& state)
{
    for (const auto read : {ReadColors, ReadSheetKind, ReadTransform}) {
        if (QString wrong = read(parser, state); !wrong.isEmpty())
            return wrong;
    }
    return {};
}

} // namespace kelvane
