// Wavefront OBJ and MTL exchange of solids: the writer (SavetoObj) and the reader (ImportFromObj).
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>
#include <vector>

#include "quillon/geometry/space/solid3.h"
#include "quillon/platform/text.h"

namespace quillon {

namespace {

using platform::FormatC;

std::filesystem::path PathOf(const wchar_t* path) {
#if defined(_WIN32)
    return std::filesystem::path(path);
#else
    // Wide names are taken as Unicode and handed to the file system as UTF-8.
    const std::string utf8 = platform::ToUtf8(path);
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
#endif
}

// ---------------------------------------------------------------- writing

// A name on one line of a text file: control characters (line ends above all) become '_'.
std::string LineName(const std::wstring& name) {
    std::string s = platform::ToUtf8(name);
    for (char& c : s) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '_';
    }
    return s;
}

std::string Header(const char* kind) {
    return std::string("#\n") + kind + "\n# Converted by Quillon \n" +
           "# Quillon solid model exchange\n#\n";
}

template <typename Loops>
bool LoopsBelow(const Mvector<std::uint32_t>& loop, const Loops& holes, std::size_t n) {
    const auto below = [n](const Mvector<std::uint32_t>& l) {
        return std::all_of(l.begin(), l.end(), [n](std::uint32_t i) { return i < n; });
    };
    return below(loop) && std::all_of(holes.begin(), holes.end(), below);
}

// Whether a parallel loop pair has the shape of the face's vertex loops.
bool Parallel(const Face3& f, const Mvector<std::uint32_t>& loop,
              const Mmatrix<std::uint32_t>& holes) {
    if (loop.size() != f.loop.size() || holes.size() != f.holes.size()) return false;
    for (std::size_t i = 0; i < holes.size(); ++i) {
        if (holes[i].size() != f.holes[i].size()) return false;
    }
    return true;
}

// The OBJ text of a solid, or nothing when a face refers to something the solid lacks.
std::optional<std::string> ObjText(const Solid3& s, const std::string& mtlName) {
    const auto& vertices = s.Vertex();
    const auto& normals = s.Normal();
    const auto& materials = s.Material();
    for (const Face3& f : s.Face()) {
        if (!LoopsBelow(f.loop, f.holes, vertices.size())) return std::nullopt;
        if (Parallel(f, f.normalLoop, f.normalHoles) &&
            !LoopsBelow(f.normalLoop, f.normalHoles, normals.size())) {
            return std::nullopt;
        }
        if (Parallel(f, f.textureLoop, f.textureHoles) &&
            !LoopsBelow(f.textureLoop, f.textureHoles, f.texture.size())) {
            return std::nullopt;
        }
        if (f.material >= 0 && static_cast<std::size_t>(f.material) >= materials.size()) {
            return std::nullopt;
        }
    }

    std::string out = Header("# Wavefront OBJ file ");
    if (!materials.empty()) out += "\nmtllib " + mtlName + "\n";
    out += FormatC("\n# %d Verticies \n", static_cast<int>(vertices.size()));
    for (const Vertex3d& v : vertices) {
        out += FormatC("v %f %f %f\n", v.point.x, v.point.y, v.point.z);
    }
    out += FormatC("\n# %d Normals\n", static_cast<int>(normals.size()));
    for (const Normal3& n : normals) out += FormatC("vn %f %f %f\n", n.vec.x, n.vec.y, n.vec.z);

    std::vector<Point2> textures;  // gathered while the faces are written
    int lastMaterial = -1;
    Mmatrix<std::size_t> triangles;
    std::vector<std::uint32_t> cv, cn, ct;  // per corner: vertex, normal, texture
    for (const Face3& f : s.Face()) {
        if (f.material >= 0 && f.material != lastMaterial) {
            out +=
                "usemtl " + LineName(materials[static_cast<std::size_t>(f.material)].name) + "\n";
        }
        lastMaterial = f.material;
        const bool hasN = Parallel(f, f.normalLoop, f.normalHoles);
        const bool hasT = Parallel(f, f.textureLoop, f.textureHoles);
        const std::size_t textureBase = textures.size();
        if (hasT) textures.insert(textures.end(), f.texture.begin(), f.texture.end());

        cv.assign(f.loop.begin(), f.loop.end());
        cn.assign(f.normalLoop.begin(), f.normalLoop.end());
        ct.assign(f.textureLoop.begin(), f.textureLoop.end());
        for (std::size_t h = 0; h < f.holes.size(); ++h) {
            cv.insert(cv.end(), f.holes[h].begin(), f.holes[h].end());
            if (hasN) cn.insert(cn.end(), f.normalHoles[h].begin(), f.normalHoles[h].end());
            if (hasT) ct.insert(ct.end(), f.textureHoles[h].begin(), f.textureHoles[h].end());
        }
        // OBJ faces have no holes: a face with holes goes as its triangles (one without area
        // as its outer loop).
        triangles.clear();
        if (f.holes.empty() || !TriangulateFaceCorners(f, vertices, s.GetEps(), triangles)) {
            triangles.assign(1, Mvector<std::size_t>());
            for (std::size_t c = 0; c < f.loop.size(); ++c) triangles[0].push_back(c);
        }
        for (const auto& row : triangles) {
            out += "f";
            for (const std::size_t c : row) {
                const long long v = static_cast<long long>(cv[c]) + 1;
                if (hasT && hasN) {
                    out += FormatC(" %lld/%lld/%lld", v,
                                   static_cast<long long>(textureBase + ct[c]) + 1,
                                   static_cast<long long>(cn[c]) + 1);
                } else if (hasN) {
                    out += FormatC(" %lld//%lld", v, static_cast<long long>(cn[c]) + 1);
                } else if (hasT) {
                    out +=
                        FormatC(" %lld/%lld/", v, static_cast<long long>(textureBase + ct[c]) + 1);
                } else {
                    out += FormatC(" %lld", v);
                }
            }
            out += "\n";
        }
    }
    out += FormatC("\n# %d Texture verticies \n", static_cast<int>(textures.size()));
    for (const Point2& t : textures) out += FormatC("vt %f %f\n", t.x, t.y);
    return out;
}

std::string MtlText(const Solid3& s) {
    std::string out = Header("# Wavefront MTL file ");
    for (const Material3& m : s.Material()) {
        out += "\nnewmtl " + LineName(m.name) + "\n";
        out += FormatC("Ka %f %f %f\n", m.ambient.x, m.ambient.y, m.ambient.z);
        out += FormatC("Kd %f %f %f\n", m.diffuse.x, m.diffuse.y, m.diffuse.z);
        out += FormatC("Ks %f %f %f\n", m.specular.x, m.specular.y, m.specular.z);
        out += FormatC("d %f\n", m.opacity);
        out += FormatC("illum %d\n", m.illum);
    }
    return out;
}

bool WriteFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        std::error_code ec;
        std::filesystem::remove(path, ec);
        return false;
    }
    return true;
}

// ---------------------------------------------------------------- reading

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\r'; }

std::string_view Trim(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

std::vector<std::string_view> Tokens(std::string_view s) {
    std::vector<std::string_view> t;
    std::size_t i = 0;
    while (i < s.size()) {
        while (i < s.size() && IsBlank(s[i])) ++i;
        const std::size_t start = i;
        while (i < s.size() && !IsBlank(s[i])) ++i;
        if (i > start) t.push_back(s.substr(start, i - start));
    }
    return t;
}

// The logical lines of a text: "\n" or "\r\n" ends, comments ('#' to the end) removed, a
// final backslash joining the next line, blanks trimmed. A leading UTF-8 byte order mark is
// skipped.
std::vector<std::string> Lines(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    std::vector<std::string> lines;
    std::string pending;
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t end = text.find('\n', i);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(i, end - i);
        i = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const std::size_t hash = line.find('#');
        if (hash != std::string_view::npos) line = line.substr(0, hash);
        const std::string_view trimmed = Trim(line);
        if (!trimmed.empty() && trimmed.back() == '\\') {
            pending.append(trimmed.substr(0, trimmed.size() - 1));
            pending.push_back(' ');
            continue;
        }
        pending.append(trimmed);
        lines.emplace_back(Trim(pending));
        pending.clear();
    }
    if (!pending.empty()) lines.emplace_back(Trim(pending));
    return lines;
}

// A whole token as a finite number.
bool ReadNumber(std::string_view token, double& value) {
    std::size_t used = 0;
    value = platform::LeadingDouble(token, &used);
    return used == token.size() && std::isfinite(value);
}

// A whole token as a non-zero integer that fits in 64 bits.
bool ReadIndex(std::string_view token, long long& value) {
    std::size_t i = 0;
    bool negative = false;
    if (i < token.size() && (token[i] == '+' || token[i] == '-')) negative = token[i++] == '-';
    if (i == token.size()) return false;
    unsigned long long v = 0;
    for (; i < token.size(); ++i) {
        if (token[i] < '0' || token[i] > '9') return false;
        if (v > (std::numeric_limits<unsigned long long>::max() - 9) / 10) return false;
        v = v * 10 + static_cast<unsigned>(token[i] - '0');
        if (v > static_cast<unsigned long long>(std::numeric_limits<long long>::max())) {
            return false;
        }
    }
    value = negative ? -static_cast<long long>(v) : static_cast<long long>(v);
    return value != 0;
}

bool ReadFile(const std::filesystem::path& path, std::string& text) {
    std::error_code ec;
    // Only regular files: a device or a pipe named in a file must not be read for ever.
    if (!std::filesystem::is_regular_file(path, ec)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

const char* const kIgnored[] = {"l",          "p",         "vp",       "cstype", "deg",    "bmat",
                                "step",       "curv",      "curv2",    "surf",   "parm",   "trim",
                                "hole",       "scrv",      "sp",       "end",    "con",    "mg",
                                "bevel",      "c_interp",  "d_interp", "lod",    "usemap", "maplib",
                                "shadow_obj", "trace_obj", "ctech",    "stech",  "call",   "csh"};

struct ObjCorner {
    long long v = -1, t = -1, n = -1;  // zero-based; -1 absent
};

class ObjReader {
public:
    explicit ObjReader(std::filesystem::path file) : objPath(std::move(file)) {}

    bool Read(const std::string& text) {
        for (const std::string& line : Lines(text)) {
            if (line.empty()) continue;
            if (!Statement(Tokens(line), line)) return false;
        }
        return Resolve();
    }

    std::vector<Point3> v;
    std::vector<Vector3> vn;
    std::vector<Point2> vt;
    std::vector<std::vector<ObjCorner>> faceCorners;
    std::vector<int> faceMaterial;
    Mvector<Material3> materials;
    std::optional<std::wstring> name;

private:
    bool Statement(const std::vector<std::string_view>& t, std::string_view line) {
        const std::string_view key = t[0];
        const auto rest = [&] { return Trim(line.substr(key.size())); };
        if (key == "v")
            return Numbers(t, 3, 7, [&](const double* d) { v.emplace_back(d[0], d[1], d[2]); });
        if (key == "vn")
            return Numbers(t, 3, 3, [&](const double* d) { vn.emplace_back(d[0], d[1], d[2]); });
        if (key == "vt")
            return Numbers(t, 1, 3, [&](const double* d) { vt.emplace_back(d[0], d[1]); });
        if (key == "f" || key == "fo") return Face(t);
        if (key == "o") {
            if (!name) name = platform::FromUtf8(rest());
            return true;
        }
        if (key == "g" || key == "s") return true;
        if (key == "usemtl") {
            current = MaterialIndex(platform::FromUtf8(rest()), true);
            return true;
        }
        if (key == "mtllib") return Library(rest(), t);
        for (const char* k : kIgnored) {
            if (key == k) return true;
        }
        return false;
    }

    template <typename Store>
    static bool Numbers(const std::vector<std::string_view>& t, std::size_t lo, std::size_t hi,
                        Store store) {
        const std::size_t n = t.size() - 1;
        if (n < lo || n > hi) return false;
        double d[7] = {0, 0, 0, 0, 0, 0, 0};
        for (std::size_t i = 0; i < n; ++i) {
            if (!ReadNumber(t[i + 1], d[i])) return false;
        }
        store(d);
        return true;
    }

    // An index as written (one-based, or negative counting back from `count` elements read so
    // far) to a zero-based one; positive ones are checked once the whole file is read.
    static bool Index(std::string_view token, std::size_t count, long long& out) {
        long long i = 0;
        if (!ReadIndex(token, i)) return false;
        if (i < 0) {
            if (static_cast<unsigned long long>(-i) > count) return false;
            out = static_cast<long long>(count) + i;
        } else {
            out = i - 1;
        }
        return true;
    }

    bool Face(const std::vector<std::string_view>& t) {
        if (t.size() < 4) return false;
        std::vector<ObjCorner> corners;
        int form = -1;  // bit 1: texture, bit 2: normal
        for (std::size_t i = 1; i < t.size(); ++i) {
            std::string_view parts[3];
            std::size_t n = 0;
            std::string_view s = t[i];
            while (true) {
                const std::size_t slash = s.find('/');
                if (n == 3) return false;
                parts[n++] = s.substr(0, slash);
                if (slash == std::string_view::npos) break;
                s.remove_prefix(slash + 1);
            }
            ObjCorner c;
            if (!Index(parts[0], v.size(), c.v)) return false;
            const bool hasT = n >= 2 && !parts[1].empty();
            const bool hasN = n == 3 && !parts[2].empty();
            if (n >= 2 && !hasT && !hasN) return false;  // "v/" or "v//"
            if (hasT && !Index(parts[1], vt.size(), c.t)) return false;
            if (hasN && !Index(parts[2], vn.size(), c.n)) return false;
            const int f = (hasT ? 1 : 0) | (hasN ? 2 : 0);
            if (form >= 0 && f != form) return false;
            form = f;
            corners.push_back(c);
        }
        faceCorners.push_back(std::move(corners));
        faceMaterial.push_back(current);
        return true;
    }

    int MaterialIndex(const std::wstring& n, bool add) {
        const auto it = std::find_if(materials.begin(), materials.end(),
                                     [&](const Material3& m) { return m.name == n; });
        if (it != materials.end()) return static_cast<int>(it - materials.begin());
        if (!add) return -1;
        materials.Add(Material3(n));
        return static_cast<int>(materials.size() - 1);
    }

    // "mtllib": the rest of the line as one file name, else each word as one (file names may
    // hold blanks, and one statement may name several libraries). Missing libraries give no
    // materials; a library that does not read fails the import.
    bool Library(std::string_view rest, const std::vector<std::string_view>& t) {
        if (rest.empty()) return false;
        std::string text;
        if (ReadFile(Beside(rest), text)) return Mtl(text);
        for (std::size_t i = 1; i < t.size(); ++i) {
            if (ReadFile(Beside(t[i]), text) && !Mtl(text)) return false;
        }
        return true;
    }

    std::filesystem::path Beside(std::string_view fileName) const {
        const std::string utf8(fileName);
        const std::filesystem::path p(std::u8string(utf8.begin(), utf8.end()));
        return p.is_absolute() ? p : objPath.parent_path() / p;
    }

    bool Mtl(const std::string& text) {
        int m = -1;
        for (const std::string& line : Lines(text)) {
            if (line.empty()) continue;
            const auto t = Tokens(line);
            const std::string_view key = t[0];
            if (key == "newmtl") {
                m = MaterialIndex(platform::FromUtf8(Trim(std::string_view(line).substr(6))), true);
                continue;
            }
            if (m < 0) continue;  // statements before the first material carry nothing
            Material3& mat = materials[static_cast<std::size_t>(m)];
            if (key == "Ka" || key == "Kd" || key == "Ks") {
                if (t.size() > 1 && (t[1] == "spectral" || t[1] == "xyz")) continue;
                Vector3& c = key == "Ka" ? mat.ambient : key == "Kd" ? mat.diffuse : mat.specular;
                if (!Numbers(t, 1, 3, [&](const double* d) {
                        c.set(d[0], t.size() > 2 ? d[1] : d[0], t.size() > 3 ? d[2] : d[0]);
                    })) {
                    return false;
                }
            } else if (key == "d" || key == "Tr") {
                const std::size_t first = t.size() > 1 && t[1] == "-halo" ? 2 : 1;
                double value = 0.0;
                if (t.size() != first + 1 || !ReadNumber(t[first], value)) return false;
                mat.opacity = key == "d" ? value : 1.0 - value;
            } else if (key == "illum") {
                long long i = 0;
                if (t.size() != 2 || !(ReadIndex(t[1], i) || t[1] == "0")) return false;
                if (i < std::numeric_limits<int>::min() || i > std::numeric_limits<int>::max()) {
                    return false;
                }
                mat.illum = static_cast<int>(i);
            }
        }
        return true;
    }

    // Positive indices may refer forward; all are checked against the totals at the end.
    bool Resolve() const {
        for (const auto& corners : faceCorners) {
            for (const ObjCorner& c : corners) {
                if (c.v < 0 || static_cast<std::size_t>(c.v) >= v.size()) return false;
                if (c.t >= 0 && static_cast<std::size_t>(c.t) >= vt.size()) return false;
                if (c.n >= 0 && static_cast<std::size_t>(c.n) >= vn.size()) return false;
            }
        }
        return v.size() <= std::numeric_limits<std::uint32_t>::max() &&
               vn.size() <= std::numeric_limits<std::uint32_t>::max();
    }

    std::filesystem::path objPath;
    int current = -1;
};

// Every undirected edge run exactly once in each direction.
bool ClosedMesh(const Mvector<Face3>& faces) {
    std::unordered_map<std::uint64_t, std::pair<int, int>> runs;
    const auto add = [&](const Mvector<std::uint32_t>& l) {
        for (std::size_t i = 0, n = l.size(); i < n; ++i) {
            const std::uint32_t a = l[i], b = l[(i + 1) % n];
            const bool forward = a < b;
            const std::uint64_t key =
                forward ? (std::uint64_t{a} << 32 | b) : (std::uint64_t{b} << 32 | a);
            auto& r = runs[key];
            (forward ? r.first : r.second) += 1;
        }
    };
    for (const Face3& f : faces) {
        add(f.loop);
        for (const auto& h : f.holes) add(h);
    }
    return !runs.empty() && std::all_of(runs.begin(), runs.end(), [](const auto& r) {
        return r.second.first == 1 && r.second.second == 1;
    });
}

}  // namespace

int Solid3::SavetoObj(const wchar_t* path) const {
    return path == nullptr ? 0 : SavetoObj(PathOf(path));
}

int Solid3::SavetoObj(const std::filesystem::path& path) const {
    if (path.empty() || !path.has_filename()) return 0;
    std::filesystem::path mtlPath = path;
    mtlPath.replace_extension(".mtl");
    if (mtlPath == path) mtlPath += ".mtl";  // an OBJ file named *.mtl keeps its own name
    const auto mtlName = mtlPath.filename().u8string();
    const std::optional<std::string> obj =
        ObjText(*this, std::string(mtlName.begin(), mtlName.end()));
    if (!obj) return 0;
    if (!WriteFile(path, *obj)) return 0;
    if (!materials.empty() && !WriteFile(mtlPath, MtlText(*this))) {
        std::error_code ec;
        std::filesystem::remove(path, ec);
        return 0;
    }
    return 1;
}

int Solid3::ImportFromObj(const wchar_t* path) {
    return path == nullptr ? 0 : ImportFromObj(PathOf(path));
}

int Solid3::ImportFromObj(const std::filesystem::path& path) {
    std::string text;
    if (!ReadFile(path, text)) return 0;
    ObjReader reader(path);
    if (!reader.Read(text)) return 0;

    Mvector<Vertex3d> vs;
    vs.reserve(reader.v.size());
    for (const Point3& p : reader.v) vs.push_back(Vertex3d(p));
    Mvector<Normal3> ns;
    ns.reserve(reader.vn.size());
    for (const Vector3& n : reader.vn) ns.push_back(Normal3(n));
    Mvector<Face3> fs;
    fs.reserve(reader.faceCorners.size());
    for (std::size_t i = 0; i < reader.faceCorners.size(); ++i) {
        const auto& corners = reader.faceCorners[i];
        Face3 f;
        f.material = reader.faceMaterial[i];
        std::unordered_map<long long, std::uint32_t> local;  // file texture index -> face's
        for (const ObjCorner& c : corners) {
            f.loop.push_back(static_cast<std::uint32_t>(c.v));
            if (c.n >= 0) f.normalLoop.push_back(static_cast<std::uint32_t>(c.n));
            if (c.t >= 0) {
                const auto [it, added] =
                    local.emplace(c.t, static_cast<std::uint32_t>(f.texture.size()));
                if (added) f.texture.push_back(reader.vt[static_cast<std::size_t>(c.t)]);
                f.textureLoop.push_back(it->second);
            }
        }
        fs.push_back(std::move(f));
    }

    if (reader.name) name = *reader.name;
    vertices = std::move(vs);
    normals = std::move(ns);
    faces = std::move(fs);
    materials = std::move(reader.materials);
    Invalidate();
    GenerateEdges();
    closed = ClosedMesh(faces);
    return 1;
}

}  // namespace quillon
