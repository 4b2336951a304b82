// quillon: the command-line program. Everything it does lives in cli.cpp, where tests reach it.
#include <iostream>
#include <string>
#include <vector>

#include "tools/quillon/cli.h"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> args(argv + 1, argv + argc);
    return quillon::tool::RunQuillon(args, std::cin, std::cout, std::cerr);
}
