#include "tools/quillon/shape_input.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

#include "quillon/geometry/contours/contour_heal.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/platform/text.h"
#include "tools/quillon/cli.h"
#include "tools/quillon/shape_output.h"

namespace quillon::tool {

const OptionSpec kFixOption{"fix", nullptr,
                            "let the solver rebuild an invalid shape instead of refusing it"};
const OptionSpec kCleanOption{"clean", nullptr,
                              "merge straight edges on one line and arcs of one circle"};

namespace {

// A long list helps nobody: the first problems show what is wrong.
constexpr std::size_t kProblemsListed = 20;

bool IsBlank(char c) { return platform::IsAsciiSpace(c); }

bool IsTextItself(const std::string& argument) {
    const auto first = std::find_if_not(argument.begin(), argument.end(), IsBlank);
    if (first != argument.end() && (*first == '(' || *first == '"')) return true;
    return argument.find('\n') != std::string::npos;
}

void ListProblems(const Invocation& call, const ContourValidation& v) {
    for (std::size_t i = 0; i < v.problems.size() && i < kProblemsListed; ++i)
        call.err << "  " << DescribeProblem(v.problems[i]) << "\n";
    if (v.problems.size() > kProblemsListed)
        call.err << "  ... and " << v.problems.size() - kProblemsListed << " more\n";
}

std::string ProblemCount(const ContourValidation& v) {
    return std::to_string(v.problems.size()) + (v.problems.size() == 1 ? " problem" : " problems");
}

// Numbers the solver cannot rebuild either: not finite, or beyond what areas can hold.
bool Unmeasurable(const ContourValidation& v) {
    return v.Count(ContourProblemKind::NotFinite) + v.Count(ContourProblemKind::Overflow) > 0;
}

}  // namespace

std::optional<InputText> ReadInput(const Invocation& call, const std::string& argument) {
    if (argument == "-")
        return InputText{std::string(std::istreambuf_iterator<char>(call.in), {}), "-"};
    std::error_code ec;
    const bool isFile = !IsTextItself(argument) && std::filesystem::exists(argument, ec);
    if (!isFile &&
        (IsTextItself(argument) || std::any_of(argument.begin(), argument.end(), IsBlank)))
        return InputText{argument, "the text argument"};
    std::ifstream file(argument, std::ios::binary);
    if (!file) {
        call.Fail(kBadInput, "cannot open '" + argument + "'");
        return std::nullopt;
    }
    return InputText{std::string(std::istreambuf_iterator<char>(file), {}), argument};
}

std::optional<ShapeInput> ReadShapeInput(const Invocation& call, const std::string& argument,
                                         const std::string& label, double eps) {
    const std::optional<InputText> input = ReadInput(call, argument);
    if (!input) return std::nullopt;
    return CheckShapeInput(call, *input, label, eps);
}

std::optional<ShapeInput> CheckShapeInput(const Invocation& call, const InputText& input,
                                          const std::string& label, double eps) {
    const std::string name = label.empty() ? input.name : label;
    ShapeText read = ReadShapeText(platform::FromUtf8(input.text));
    if (!read.shape) {
        const ContourTextError& e = *read.error;
        call.Fail(kBadInput, name + " is not a contour text: error " + std::to_string(e.code) +
                                 " (" + e.what() + ") at line " + std::to_string(e.line + 1) +
                                 ", character " + std::to_string(e.position));
        return std::nullopt;
    }
    ShapeInput result{std::move(read.shape), read.unit ? platform::ToUtf8(*read.unit) : "", name};
    HealComplexContour(*result.shape, eps, TextRoundingTolerance(*result.shape));
    const ContourValidation found = ValidateComplexContour(*result.shape, eps);
    if (found.IsValid()) return result;

    if (Unmeasurable(found)) {
        call.Fail(kBadInput, name + ": cannot be measured: coordinates must be finite and within " +
                                 platform::FormatC("%g", kMaxContourCoordinate) + " (" +
                                 ProblemCount(found) + "):");
        ListProblems(call, found);
        return std::nullopt;
    }
    const std::string what = platform::FormatC(" at eps %g (", eps) + ProblemCount(found) + ")";
    if (!call.Has(kFixOption.name)) {
        call.Fail(kBadInput, name + ": not a valid shape" + what + ":");
        ListProblems(call, found);
        call.err << "  (--fix lets the solver rebuild it)\n";
        return std::nullopt;
    }
    call.Note(name + ": not a valid shape" + what + ":");
    ListProblems(call, found);
    result.shape = NormalizeShape(*result.shape, eps);
    const ContourValidation left = ValidateComplexContour(*result.shape, eps);
    if (!left.IsValid()) {
        call.Fail(kBadInput, name + ": the solver's rebuilding is not valid either (" +
                                 ProblemCount(left) + "):");
        ListProblems(call, left);
        return std::nullopt;
    }
    call.Note(name + ": fixed: rebuilt by the solver into " + ShapeSummary(*result.shape));
    return result;
}

bool ReadEpsOption(const Invocation& call, double& eps) {
    if (!call.Has("eps")) return true;
    const std::string text = call.Get("eps", "");
    std::size_t used = 0;
    const double value = platform::LeadingDouble(text, &used);
    if (used != text.size() || !(value > 0.0) || !std::isfinite(value)) return false;
    eps = value;
    return true;
}

ResultCleanUp CleanUpAsked(const Invocation& call) {
    return call.Has(kCleanOption.name) ? ResultCleanUp::Simplify : ResultCleanUp::Keep;
}

}  // namespace quillon::tool
