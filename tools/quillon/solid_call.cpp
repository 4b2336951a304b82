#include <ostream>

#include "tools/quillon/cli.h"
#include "tools/quillon/solid_commands.h"

namespace quillon::tool {

bool SolidCall::Has(const std::string& option) const {
    for (const auto& o : options)
        if (o.first == option) return true;
    return false;
}

std::string SolidCall::Get(const std::string& option, const std::string& fallback) const {
    std::string value = fallback;
    for (const auto& o : options)
        if (o.first == option) value = o.second;
    return value;
}

std::vector<std::string> SolidCall::All(const std::string& option) const {
    std::vector<std::string> values;
    for (const auto& o : options)
        if (o.first == option) values.push_back(o.second);
    return values;
}

int SolidCall::Fail(int code, const std::string& message) const {
    err << "quillon " << name << ": " << message << "\n";
    return code;
}

int SolidCall::Usage(const std::string& message) const {
    err << "quillon " << name << ": " << message << "\n"
        << usageLine << "'quillon " << name << " --help' tells more.\n";
    return kUsage;
}

}  // namespace quillon::tool
