// The quillon command-line program, as a function so that tests run it like a user does.
//
//   quillon demo [--out DIR] [--units mm|cm|m]
//   quillon solve [FILE|-] [--svg FILE] [--eps E]
//   quillon bool union|difference|intersection A B [--svg FILE] [--eps E]
//   quillon section [FILE|-] [--units mm|cm|m]
//   quillon unit TEXT...
//
// Exit codes: 0 done, 1 usage (unknown command or option, missing argument), 2 bad input (the
// reader's error code and where it stopped are printed on the error stream).
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace quillon::tool {

enum ExitCode { kDone = 0, kUsage = 1, kBadInput = 2 };

// args excludes the program name. `in` serves "-" arguments.
int RunQuillon(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err);

}  // namespace quillon::tool
