// The program's commands of space: 'plate' (a drawing extruded to a plate, openings subtracted,
// written as OBJ and MTL), 'tube' (a polyline swept by a circle, written as OBJ) and 'obj-info'
// (figures of an OBJ file). cli.cpp lists them in its command table and hands each a SolidCall.
#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

namespace quillon::tool {

// A command as the user called it. `options` keeps every option in the order given, repeats
// included (--hole may be given many times); flags carry "".
struct SolidCall {
    std::string name;       // the command, for messages
    std::string usageLine;  // "usage: quillon NAME ..." with its newline
    std::vector<std::string> positional;
    std::vector<std::pair<std::string, std::string>> options;
    std::ostream& out;
    std::ostream& err;

    bool Has(const std::string& option) const;
    // The last value given for the option, or `fallback`.
    std::string Get(const std::string& option, const std::string& fallback) const;
    // Every value given for the option, in order.
    std::vector<std::string> All(const std::string& option) const;
    // The message on standard error, prefixed by the command; returns `code`.
    int Fail(int code, const std::string& message) const;
    // A usage error (exit code 1): the message and the usage line.
    int Usage(const std::string& message) const;
};

int RunPlate(const SolidCall& call);
int RunTube(const SolidCall& call);
int RunObjInfo(const SolidCall& call);

}  // namespace quillon::tool
