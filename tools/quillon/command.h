// What every command of the quillon program works with: its declaration (name, arguments, help,
// options, the function that runs it) and its invocation (the words the user gave, sorted into
// arguments and options, and the streams). The table of commands in cli.cpp is the one place
// commands are listed; a command's function may live in a file of its own and takes an Invocation.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quillon::tool {

struct CommandSpec;

// One option of a command: --name VALUE (or --name=VALUE); a flag when `value` is null.
struct OptionSpec {
    const char* name;
    const char* value;  // placeholder shown in the usage line, e.g. "E"
    const char* help;
};

// A command as the user called it: its words sorted into arguments and options.
struct Invocation {
    const CommandSpec& command;
    std::vector<std::string> positional;
    std::map<std::string, std::string> options;  // flags map to "" (the last value when repeated)
    std::vector<std::pair<std::string, std::string>> given;  // every option in order, repeats kept
    std::istream& in;                                        // serves "-" arguments
    std::ostream& out;
    std::ostream& err;

    bool Has(const std::string& name) const { return options.count(name) != 0; }
    std::string Get(const std::string& name, const std::string& fallback) const {
        const auto it = options.find(name);
        return it == options.end() ? fallback : it->second;
    }
    // Every value given for a repeatable option, in the order given.
    std::vector<std::string> All(const std::string& name) const {
        std::vector<std::string> values;
        for (const auto& [option, value] : given)
            if (option == name) values.push_back(value);
        return values;
    }
    // An error message on standard error, prefixed by the command, and the exit code.
    int Fail(int code, const std::string& message) const;
    // A note on standard error, prefixed by the command; the command goes on.
    void Note(const std::string& message) const;
    // A usage error: the message, then the usage line; exit code kUsage.
    int Usage(const std::string& message) const;
};

// The one place a command is declared: what 'quillon --help' lists, what 'quillon NAME --help'
// prints, which options the command accepts and the function that does the work.
struct CommandSpec {
    const char* name;
    const char* arguments;  // the positional part of the usage line
    const char* summary;    // one line for 'quillon --help'
    const char* help;       // what the command does
    std::vector<OptionSpec> options;
    int (*run)(const Invocation&);

    std::string UsageLine() const;
    std::string Help() const;
    const OptionSpec* Option(const std::string& optionName) const;
};

}  // namespace quillon::tool
