// Logical clauses: boolean terms joined by AND, OR and NOT and grouped by brackets.
//
// A clause is built by calls in reading order (brackets, terms, operators), checked, and then
// evaluated any number of times while the caller changes only the truth values of its terms. It is
// converted once into reverse Polish notation (RPN) and evaluated with a stack.
//
// Conventions:
// - No precedence: AND, OR and NOT have one rank and each applies to everything on its right up to
//   the closing bracket or the end, so "a AND b OR c" is a AND (b OR c) and "NOT a AND b" is
//   NOT (a AND b). Clauses that need another grouping carry explicit brackets.
// - Ownership: the clause owns its five shared items (one of each bracket and operator); every
//   bracket or operator in a clause points to one of them. Terms belong to the caller and must stay
//   alive while the clause is used.
// - The RPN sequence accumulates: a rebuild appends the new RPN after the earlier one and the
//   evaluation walks all of it, taking the top of the stack. Terms of earlier contents must
//   therefore stay alive as long as the clause is evaluated; the result is that of the current
//   contents.
// - Clauses that would starve the stack never crash and evaluate to false: a bracket without its
//   partner in order, an operator short of operands, or a null term. Terms side by side ("a b",
//   "a NOT b") are no such fault: the walk leaves both on the stack and the later one decides, as
//   for any clause; IsWellFormed() still calls them improper, for callers that refuse them. The RPN
//   conversion drops a closing bracket that finds no opening one, and a null element; the clause
//   text shows a null element as "null".
#pragma once

#include <string>
#include <vector>

namespace quillon::clv {

// The base of every item of a clause.
class element {
public:
    enum etype {
        term = 0,            // expr
        binaryOperator = 1,  // opr_and, opr_or
        negation = 2,        // opr_not
        openingBracket = 3,
        closingBracket = 4,
    };

    virtual ~element() = default;
    virtual std::string string() const = 0;
    virtual etype type() const = 0;

protected:
    element() = default;
    element(const element&) = default;
    element& operator=(const element&) = default;
};

// A boolean term.
class expr : public element {
public:
    expr() = default;
    explicit expr(bool v) : value_(v) {}
    expr(const expr&) = default;
    expr& operator=(const expr&) = default;
    ~expr() override = default;

    std::string string() const override { return "exp"; }
    etype type() const override { return term; }
    virtual bool value() const { return value_; }
    expr& operator=(bool v) {
        value_ = v;
        return *this;
    }

private:
    bool value_ = false;
};

// A binary operator; value(a, b) is its function, a being the later operand.
class opr : public element {
public:
    etype type() const override { return binaryOperator; }
    virtual bool value(const expr* a, const expr* b) const = 0;
};

class opr_and : public opr {
public:
    std::string string() const override { return "AND"; }
    // a is asked first; b only when a is true.
    bool value(const expr* a, const expr* b) const override { return a->value() && b->value(); }
};

class opr_or : public opr {
public:
    std::string string() const override { return "OR"; }
    // b is asked only when a is false.
    bool value(const expr* a, const expr* b) const override { return a->value() || b->value(); }
};

class opr_not : public opr {
public:
    std::string string() const override { return "NOT"; }
    etype type() const override { return negation; }
    // b is ignored (the evaluation passes null).
    bool value(const expr* a, const expr* /*b*/) const override { return !a->value(); }
};

class leftbracket : public element {
public:
    std::string string() const override { return "("; }
    etype type() const override { return openingBracket; }
};

class rightbracket : public element {
public:
    std::string string() const override { return ")"; }
    etype type() const override { return closingBracket; }
};

class clause {
public:
    clause() = default;
    clause(const clause& other);
    clause& operator=(const clause& other);
    ~clause() = default;

    // Append the shared item of that kind.
    void leftBracket();
    void rightBracket();
    void and_();
    void or_();
    void not_();
    // Append the caller's term (not copied; it must outlive the clause's use).
    void expr(clv::expr* term);
    // Empty the element sequence; the RPN sequence is kept (it accumulates, see above).
    void clear();

    // True when no element is null and the opening and closing brackets are equal in number.
    // Neither the order of the brackets nor the placement of the operators is checked.
    bool IsValid() const;
    // Stricter than IsValid: true when the sequence is a proper clause (operands where operators
    // need them, brackets paired in order, no null). An empty clause is well formed.
    bool IsWellFormed() const;

    // True for an empty clause; otherwise rebuilds if needed and walks the RPN sequence.
    bool evaluate();

    std::string GetClauseString() const;
    std::string GetRPNString();

    // The element sequence as built (read-only view for the query layer).
    const std::vector<element*>& elements() const { return elements_; }

protected:
    static std::string BuildClauseString(const std::vector<element*>& sequence);
    bool BuildRPN();

private:
    void initialize();
    void append(element* item);
    // The copy's item that stands for 'item' of 'from' (shared items map to ours, terms stay).
    element* translate(const clause& from, element* item);

    bool rebuild_ = true;
    std::vector<element*> elements_;
    std::vector<element*> rpn_;
    leftbracket leftItem_;
    rightbracket rightItem_;
    opr_and andItem_;
    opr_or orItem_;
    opr_not notItem_;
};

}  // namespace quillon::clv
