#include "quillon/data/clause.h"

#include <memory>

namespace quillon::clv {

clause::clause(const clause& other) : rebuild_(other.rebuild_) {
    elements_.reserve(other.elements_.size());
    for (element* item : other.elements_) elements_.push_back(translate(other, item));
    rpn_.reserve(other.rpn_.size());
    for (element* item : other.rpn_) rpn_.push_back(translate(other, item));
}

clause& clause::operator=(const clause& other) {
    if (this == &other) return *this;
    rebuild_ = other.rebuild_;
    std::vector<element*> elements;
    elements.reserve(other.elements_.size());
    for (element* item : other.elements_) elements.push_back(translate(other, item));
    std::vector<element*> rpn;
    rpn.reserve(other.rpn_.size());
    for (element* item : other.rpn_) rpn.push_back(translate(other, item));
    elements_.swap(elements);
    rpn_.swap(rpn);
    return *this;
}

element* clause::translate(const clause& from, element* item) {
    if (item == &from.leftItem_) return &leftItem_;
    if (item == &from.rightItem_) return &rightItem_;
    if (item == &from.andItem_) return &andItem_;
    if (item == &from.orItem_) return &orItem_;
    if (item == &from.notItem_) return &notItem_;
    return item;
}

void clause::append(element* item) {
    elements_.push_back(item);
    rebuild_ = true;
}

void clause::leftBracket() { append(&leftItem_); }
void clause::rightBracket() { append(&rightItem_); }
void clause::and_() { append(&andItem_); }
void clause::or_() { append(&orItem_); }
void clause::not_() { append(&notItem_); }
void clause::expr(clv::expr* term) { append(term); }

void clause::clear() {
    elements_.clear();
    rebuild_ = true;
}

bool clause::IsValid() const {
    std::size_t opening = 0;
    std::size_t closing = 0;
    for (const element* item : elements_) {
        if (item == nullptr) return false;
        if (item->type() == element::openingBracket) ++opening;
        if (item->type() == element::closingBracket) ++closing;
    }
    return opening == closing;
}

bool clause::IsWellFormed() const {
    // Two states: an operand is expected (at the start, after an operator or an opening bracket),
    // or an operator or a closing bracket is. Iterative, so deep nesting costs no call stack.
    bool expectOperand = true;
    std::size_t depth = 0;
    for (const element* item : elements_) {
        if (item == nullptr) return false;
        switch (item->type()) {
            case element::term:
                if (!expectOperand) return false;
                expectOperand = false;
                break;
            case element::negation:
                if (!expectOperand) return false;
                break;
            case element::openingBracket:
                if (!expectOperand) return false;
                ++depth;
                break;
            case element::binaryOperator:
                if (expectOperand) return false;
                expectOperand = true;
                break;
            case element::closingBracket:
                if (expectOperand || depth == 0) return false;
                --depth;
                break;
            default:
                return false;
        }
    }
    return elements_.empty() || (!expectOperand && depth == 0);
}

namespace {

// Whether the stack walk of these contents is sound on its own: no null, every closing bracket
// finds its opening one, no opening bracket is left over to reach the evaluation, every operator
// finds its operands, and a result is left. Terms side by side are sound: the walk leaves them on
// the stack and the later one decides. Follows the conversion step by step, counting operands.
bool StackWalkIsSound(const std::vector<element*>& sequence) {
    std::size_t operands = 0;
    std::vector<element::etype> waiting;  // the conversion's operator stack
    auto apply = [&operands](element::etype t) {
        if (t != element::binaryOperator && t != element::negation) return false;
        const std::size_t need = t == element::binaryOperator ? 2 : 1;
        if (operands < need) return false;
        operands -= need - 1;
        return true;
    };
    for (const element* item : sequence) {
        if (item == nullptr) return false;
        switch (item->type()) {
            case element::term:
                ++operands;
                break;
            case element::closingBracket:
                for (; !waiting.empty() && waiting.back() != element::openingBracket;
                     waiting.pop_back()) {
                    if (!apply(waiting.back())) return false;
                }
                if (waiting.empty()) return false;
                waiting.pop_back();
                break;
            default:
                waiting.push_back(item->type());
                break;
        }
    }
    for (; !waiting.empty(); waiting.pop_back()) {
        if (!apply(waiting.back())) return false;
    }
    return operands > 0;
}

}  // namespace

bool clause::BuildRPN() {
    // Reduced shunting-yard: operators are never compared, so each one waits on the stack until a
    // closing bracket or the end of the clause.
    std::vector<element*> stack;
    for (element* item : elements_) {
        if (item == nullptr) continue;
        switch (item->type()) {
            case element::term:
                rpn_.push_back(item);
                break;
            case element::closingBracket: {
                while (!stack.empty() && stack.back()->type() != element::openingBracket) {
                    rpn_.push_back(stack.back());
                    stack.pop_back();
                }
                if (!stack.empty()) stack.pop_back();  // else: no partner, dropped
                break;
            }
            default:  // binary operator, negation, opening bracket
                stack.push_back(item);
                break;
        }
    }
    while (!stack.empty()) {
        rpn_.push_back(stack.back());
        stack.pop_back();
    }
    return true;
}

void clause::initialize() {
    if (rebuild_) {
        BuildRPN();
        rebuild_ = false;
    }
}

bool clause::evaluate() {
    if (elements_.empty()) return true;
    initialize();
    // A clause that would starve the stack (unpaired bracket, operator short of operands, null)
    // answers false; terms side by side are evaluated as the walk gives them.
    if (!StackWalkIsSound(elements_)) return false;

    std::vector<const clv::expr*> stack;
    std::vector<std::unique_ptr<clv::expr>> temporaries;  // destroyed on every return
    auto push = [&](bool v) {
        temporaries.push_back(std::make_unique<clv::expr>(v));
        stack.push_back(temporaries.back().get());
    };
    auto pop = [&]() -> const clv::expr* {
        if (stack.empty()) return nullptr;
        const clv::expr* top = stack.back();
        stack.pop_back();
        return top;
    };

    // Earlier contents are walked too; their leftovers stay below the top. The guards below only
    // matter for earlier contents that were improper.
    for (const element* item : rpn_) {
        switch (item->type()) {
            case element::term: {
                const auto* term = dynamic_cast<const clv::expr*>(item);
                if (term != nullptr) {
                    stack.push_back(term);
                } else {
                    push(false);  // a foreign element claiming to be a term
                }
                break;
            }
            case element::binaryOperator: {
                const auto* op = dynamic_cast<const opr*>(item);
                const clv::expr* a = pop();
                const clv::expr* b = pop();
                push(op != nullptr && a != nullptr && b != nullptr && op->value(a, b));
                break;
            }
            case element::negation: {
                const auto* op = dynamic_cast<const opr*>(item);
                const clv::expr* a = pop();
                push(op != nullptr && a != nullptr && op->value(a, nullptr));
                break;
            }
            default:  // a bracket that found no partner
                push(false);
                break;
        }
    }
    return !stack.empty() && stack.back()->value();
}

std::string clause::BuildClauseString(const std::vector<element*>& sequence) {
    std::string text;
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        if (i > 0) text += ' ';
        text += sequence[i] != nullptr ? sequence[i]->string() : std::string("null");
    }
    return text;
}

std::string clause::GetClauseString() const { return BuildClauseString(elements_); }

std::string clause::GetRPNString() {
    initialize();
    return BuildClauseString(rpn_);
}

}  // namespace quillon::clv
