// The program run in-process, as the tests of its commands see it: exit code and both streams.
#pragma once

#include <sstream>
#include <string>
#include <vector>

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

}  // namespace quillon::tool
