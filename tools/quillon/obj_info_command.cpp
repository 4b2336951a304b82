// quillon obj-info FILE: reads a Wavefront OBJ file into a solid and prints its figures.
#include <filesystem>
#include <fstream>
#include <ostream>

#include "quillon/geometry/space/solid3.h"
#include "quillon/platform/text.h"
#include "tools/quillon/cli.h"
#include "tools/quillon/solid_commands.h"
#include "tools/quillon/solid_figures.h"

namespace quillon::tool {

int RunObjInfo(const Invocation& call) {
    if (call.positional.size() != 1) return call.Usage("needs one OBJ file");
    const std::filesystem::path path = call.positional[0];
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec) || !std::ifstream(path, std::ios::binary))
        return call.Fail(kBadInput, "cannot open '" + path.string() + "'");
    Solid3 solid;
    if (!solid.ImportFromObj(path))
        return call.Fail(kBadInput, path.string() +
                                        ": not an OBJ file this reader accepts (a statement, "
                                        "number or index that does not read)");
    call.out << path.filename().string();
    if (!solid.GetName().empty())
        call.out << " (object \"" << platform::ToUtf8(solid.GetName()) << "\")";
    call.out << ":\n" << SolidFigures(solid, "");
    for (const Material3& m : solid.Material())
        call.out << "  material   " << platform::ToUtf8(m.name) << "\n";
    return kDone;
}

}  // namespace quillon::tool
