// Feeds arbitrary text to the OBJ reader: the bytes before the first NUL are the OBJ file, those
// after it the MTL library "lib.mtl" beside it. Every outcome must be 1 with a consistent solid
// that writes and reads back alike, or 0 with the solid as it was; never a crash, a hang or a leak.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "quillon/geometry/space/solid3.h"

#if defined(__unix__) || defined(__APPLE__)
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

fs::path WorkDir() {
#if defined(__unix__) || defined(__APPLE__)
    const std::string tag = std::to_string(static_cast<long>(getpid()));
#else
    const std::string tag = "0";
#endif
    static const fs::path dir = [&] {
        fs::path d = fs::temp_directory_path() / ("quillon_obj_fuzz_" + tag);
        fs::create_directories(d);
        return d;
    }();
    return dir;
}

void Put(const fs::path& p, std::string_view bytes) {
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void Check(bool ok) {
    if (!ok) std::abort();
}

bool Consistent(const quillon::Solid3& s) {
    for (const quillon::Face3& f : s.Face()) {
        for (const std::uint32_t i : f.loop) {
            if (i >= s.Vertex().size()) return false;
        }
        for (const std::uint32_t i : f.normalLoop) {
            if (i >= s.Normal().size()) return false;
        }
        for (const std::uint32_t i : f.textureLoop) {
            if (i >= f.texture.size()) return false;
        }
        if (f.material >= static_cast<int>(s.Material().size())) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t nul = input.find('\0');
    const fs::path dir = WorkDir();
    Put(dir / "in.obj", input.substr(0, nul));
    Put(dir / "lib.mtl",
        nul == std::string_view::npos ? std::string_view() : input.substr(nul + 1));

    quillon::Solid3 s(1e-9);
    s.GenCuboid(quillon::Mvector<quillon::Point3>{
        {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}});
    const quillon::Solid3 before = s;
    if (s.ImportFromObj(dir / "in.obj") == 0) {
        Check(s == before);
        return 0;
    }
    Check(Consistent(s));
    // What was read writes and reads back with the same vertices and faces.
    if (s.SavetoObj(dir / "out.obj") == 1) {
        quillon::Solid3 back(1e-9);
        Check(back.ImportFromObj(dir / "out.obj") == 1);
        Check(back.Vertex().size() == s.Vertex().size());
        Check(back.Face().size() == s.Face().size());
        for (std::size_t i = 0; i < s.Face().size(); ++i) {
            Check(back.Face()[i].loop == s.Face()[i].loop);
            Check(back.Face()[i].material == s.Face()[i].material || s.Face()[i].material < 0);
        }
    }
    return 0;
}
