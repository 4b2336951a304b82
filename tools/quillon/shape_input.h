// The inputs every command reads one way: an argument is a text, a file or standard input alike,
// and a shape is checked before anything is computed from it, so that no command answers with
// confidence on a shape it cannot measure truthfully.
//
// A shape read from contour text goes through three steps:
//   1. healing (HealComplexContour with TextRoundingTolerance): arcs written with six decimals
//      miss the next edge's start by their rounding; they are made to meet it again. Nothing moves
//      farther than that rounding, so this is silent;
//   2. validation at the command's epsilon (ValidateComplexContour): a hole outside its solid,
//      overlapping solids or holes, a contour crossing itself, an arc that misses the next edge,
//      a contour enclosing no area;
//   3. an invalid shape is refused (exit code kBadInput, every problem listed on standard error)
//      unless the user gave --fix: then the solver rebuilds it (NormalizeShape at the same
//      epsilon), the problems and the repair are reported on standard error, and the command goes
//      on with the repaired shape. Coordinates that are not finite or so large that areas and
//      moments overflow (beyond kMaxContourCoordinate) are refused even with --fix: no rebuilding
//      can measure them.
#pragma once

#include <optional>
#include <string>

#include "quillon/geometry/contours/contour_ops.h"
#include "tools/quillon/command.h"

namespace quillon::tool {

// The options of commands that read shapes (honoured by ReadShapeInput) and of commands that
// print solver results (CleanUpAsked).
extern const OptionSpec kFixOption;
extern const OptionSpec kCleanOption;

struct InputText {
    std::string text;
    std::string name;  // how messages name the input: the argument, or "the text argument"
};

// The text of one input argument:
//   "-"                                          standard input;
//   first non-blank character '(' or '"', or a line break anywhere
//                                                the argument is the text itself;
//   otherwise                                    the file of that name; when there is none and
//                                                the argument holds a blank, the text itself
//                                                (a one-line drawing such as "circle 0 0 10").
// Nothing when a file cannot be opened (the message is printed; the exit code is kBadInput).
std::optional<InputText> ReadInput(const Invocation& call, const std::string& argument);

// A shape, its unit name ("" when the text has none or an empty one) and how messages name it.
struct ShapeInput {
    ShapePtr shape;
    std::string unit;
    std::string name;
};

// Reads a contour text (with or without a unit name in front) from `argument` and takes it through
// the steps above at `eps`; `label` names it in messages ("" for the input's own name). Nothing
// when it is refused; the messages are printed and the exit code is kBadInput.
std::optional<ShapeInput> ReadShapeInput(const Invocation& call, const std::string& argument,
                                         const std::string& label, double eps);

// The same steps for a text already read (a command that must look at the text first, such as one
// taking either loose elements or a contour text, reads standard input only once).
std::optional<ShapeInput> CheckShapeInput(const Invocation& call, const InputText& input,
                                          const std::string& label, double eps);

// The --eps option: true when absent (eps unchanged) or a positive finite number (eps set).
bool ReadEpsOption(const Invocation& call, double& eps);

// Simplify when the user gave --clean, Keep otherwise.
ResultCleanUp CleanUpAsked(const Invocation& call);

}  // namespace quillon::tool
