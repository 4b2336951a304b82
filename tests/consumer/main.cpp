// Stores a value and a name in the library's archive layout and reads them back: enough to show
// that headers, library and compile features reach a program that only links quillon::quillon.
#include <cstdio>
#include <sstream>
#include <string>

#include "quillon/platform/archive.h"
#include "quillon/platform/text.h"

int main() {
    std::ostringstream out;
    quillon::Archive store(out);
    store << 2.5 << std::wstring(L"plate");
    std::istringstream in(out.str());
    quillon::Archive load(in);
    double value = 0.0;
    std::wstring name;
    load >> value >> name;
    const std::string text = quillon::platform::FormatC("%s %.1f", quillon::platform::ToUtf8(name).c_str(), value);
    std::printf("%s\n", text.c_str());
    return text == "plate 2.5" ? 0 : 1;
}
