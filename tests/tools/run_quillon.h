// The program run in-process, as the tests of its commands see it: exit code and both streams.
#pragma once

#include <cmath>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"
#include "tools/quillon/cli.h"

namespace quillon::tool {

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

// `input` is what the command reads from standard input ("-").
inline Outcome run(std::vector<std::string> args, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream out, err;
    const int code = RunQuillon(args, in, out, err);
    return {code, out.str(), err.str()};
}

inline bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// The number after `label` and blanks in a command's output (" A" in a section table gives the
// area), NaN when it is not there.
inline double number(const std::string& text, const std::string& label) {
    std::smatch m;
    if (!std::regex_search(text, m, std::regex(label + " +(-?[0-9.e+-]+)"))) return std::nan("");
    return std::stod(m[1]);
}

// Area of a contour text (with or without a unit name) through the library's reader and the exact
// integrals; NaN when the text does not read.
inline double textArea(const std::string& text) {
    const ShapeText read = ReadShapeText(platform::FromUtf8(text));
    return read.shape ? CalcProps(*read.shape).area : std::nan("");
}

inline std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

}  // namespace quillon::tool
