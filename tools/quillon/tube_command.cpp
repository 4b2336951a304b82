// quillon tube: a polyline in space swept by a circle (BRNF_Tube3D), written as OBJ.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <locale>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>

#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/tube3d.h"
#include "quillon/platform/text.h"
#include "tools/quillon/cli.h"
#include "tools/quillon/shape_input.h"
#include "tools/quillon/solid_commands.h"
#include "tools/quillon/solid_figures.h"

namespace quillon::tool {

namespace {

// The path file: one point "x y z" a line, "#" starts a comment. False with the line number of
// the first line that is not a point.
bool ReadPath(std::istream& in, Mvector<Point3>& path, int& badLine) {
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        line = line.substr(0, line.find('#'));
        std::istringstream words(line);
        words.imbue(std::locale::classic());
        std::string probe;
        if (!(words >> probe)) continue;
        words.seekg(0);
        words.clear();
        double x, y, z;
        if (!(words >> x >> y >> z) || (words >> probe) || !std::isfinite(x) || !std::isfinite(y) ||
            !std::isfinite(z)) {
            badLine = number;
            return false;
        }
        path.push_back(Point3(x, y, z));
    }
    return true;
}

}  // namespace

int RunTube(const Invocation& call) {
    if (call.positional.size() != 1) return call.Usage("needs one path file");
    const std::string d = call.Get("diameter", "");
    std::size_t used = 0;
    const double diameter = platform::LeadingDouble(d, &used);
    if (d.empty() || used != d.size() || !(diameter > 0.0) || !std::isfinite(diameter))
        return call.Usage("--diameter needs a positive number");
    const std::string s = call.Get("segments", "24");
    const int segments = static_cast<int>(platform::LeadingDouble(s, &used));
    if (used != s.size() || segments < 3 || segments > 1000)
        return call.Usage("--segments takes a whole number from 3 to 1000");

    const std::optional<InputText> input = ReadInput(call, call.positional[0]);
    if (!input) return kBadInput;
    std::istringstream text(input->text);
    Mvector<Point3> path;
    int badLine = 0;
    if (!ReadPath(text, path, badLine))
        return call.Fail(kBadInput,
                         input->name + ":" + std::to_string(badLine) + ": expected a point: x y z");
    if (path.size() < 2)
        return call.Fail(kBadInput, input->name + ": a path needs two points at least");

    Mvector<Point3> points;
    Mvector<Vector3> normals;
    Mmatrix<std::size_t> faces;
    if (!BRNF_Tube3D(points, normals, faces, path, diameter, segments, segments) || faces.empty())
        return call.Fail(kBadInput, input->name + ": no tube along this path");

    // Cap points coincide with the end rings' points: merged, so that the surface is closed.
    Solid3 tube(diameter * 1e-9);
    Mvector<std::uint32_t> index;
    for (const Point3& p : points)
        index.push_back(static_cast<std::uint32_t>(tube.GetVertexInd(p)));
    // Side quadrilaterals may be skew: each becomes two triangles, so every face is plane.
    for (const auto& f : faces) {
        if (f.size() == 4) {
            tube.AddFace(Face3(Mvector<std::uint32_t>{index[f[0]], index[f[1]], index[f[2]]}));
            tube.AddFace(Face3(Mvector<std::uint32_t>{index[f[0]], index[f[2]], index[f[3]]}));
            continue;
        }
        Mvector<std::uint32_t> loop;
        for (const std::size_t i : f) loop.push_back(index[i]);
        tube.AddFace(Face3(loop));
    }
    // This library's solids turn clockwise seen from outside.
    if (SolidVolume(tube) < 0.0)
        for (Face3& f : tube.Face()) std::reverse(f.loop.begin(), f.loop.end());
    tube.GenerateEdges();
    if (!SolidIsClosed(tube))
        return call.Fail(kBadInput, input->name +
                                        ": the tube is not closed: a segment runs along the "
                                        "normal of the path's first bend, which flattens its ring");

    const std::filesystem::path base = call.Get("out", "tube");
    tube.SetName(platform::FromUtf8(base.filename().string()));
    std::filesystem::path obj = base;
    obj += ".obj";
    std::error_code ec;
    if (base.has_parent_path()) std::filesystem::create_directories(base.parent_path(), ec);
    if (!tube.SavetoObj(obj)) return call.Fail(kCannotWrite, "cannot write '" + obj.string() + "'");
    call.out << platform::FormatC("Tube: %zu path points, diameter %g, %d segments a ring\n",
                                  path.size(), diameter, segments)
             << SolidFigures(tube, "") << "File: " << obj.string() << "\n";
    return kDone;
}

}  // namespace quillon::tool
