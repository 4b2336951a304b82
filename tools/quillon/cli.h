// The quillon command-line program, as a function so that tests run it like a user does.
//
//   quillon COMMAND [ARGS] [--OPTION VALUE | --OPTION=VALUE]...
//   quillon --help | --version
//
// The commands (demo, solve, bool, section, unit; obj-info, plate, tube in solid_commands.h) are
// declared in one table in cli.cpp: name, arguments, help, options and the function that runs
// them; 'quillon COMMAND --help' prints what the table says. Results go to standard output,
// every error message to standard error.
//
// Exit codes: 0 done; 1 usage (unknown command or option, missing or malformed argument);
// 2 bad input (a file that cannot be read or does not parse: the reader's error and where it
// stopped are printed); 3 an output file could not be written.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace quillon::tool {

enum ExitCode { kDone = 0, kUsage = 1, kBadInput = 2, kCannotWrite = 3 };

// args excludes the program name. `in` serves "-" arguments.
int RunQuillon(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err);

}  // namespace quillon::tool
