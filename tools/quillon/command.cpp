#include "tools/quillon/command.h"

#include <algorithm>
#include <ostream>

#include "tools/quillon/cli.h"

namespace quillon::tool {

int Invocation::Fail(int code, const std::string& message) const {
    err << "quillon " << command.name << ": " << message << "\n";
    return code;
}

void Invocation::Note(const std::string& message) const {
    err << "quillon " << command.name << ": " << message << "\n";
}

int Invocation::Usage(const std::string& message) const {
    err << "quillon " << command.name << ": " << message << "\n"
        << command.UsageLine() << "'quillon " << command.name << " --help' tells more.\n";
    return kUsage;
}

std::string CommandSpec::UsageLine() const {
    std::string line = std::string("usage: quillon ") + name;
    if (*arguments != '\0') line += std::string(" ") + arguments;
    for (const OptionSpec& o : options)
        line += std::string(" [--") + o.name + (o.value ? std::string(" ") + o.value : "") + "]";
    return line + "\n";
}

std::string CommandSpec::Help() const {
    std::string text = UsageLine() + help;
    if (!options.empty()) text += "options:\n";
    for (const OptionSpec& o : options) {
        std::string left =
            std::string("  --") + o.name + (o.value ? std::string(" ") + o.value : "");
        left.resize(std::max<std::size_t>(left.size() + 2, 20), ' ');
        text += left + o.help + "\n";
    }
    return text;
}

const OptionSpec* CommandSpec::Option(const std::string& optionName) const {
    for (const OptionSpec& o : options)
        if (optionName == o.name) return &o;
    return nullptr;
}

}  // namespace quillon::tool
