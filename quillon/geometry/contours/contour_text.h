// Contour text: the compact, parenthesised notation in which line-arc contours and structured
// contour trees are stored in database fields and exchanged through the clipboard.
//
// Grammar (white space may stand between any two tokens; writers emit none except where shown):
//   edge     = "(L x y)" | "(A cx cy r a0 sweep)"
//   contour  = "(" edge* ")"
//   closed   = "(H" contour ext ")" | "(S" contour [" attr "] "(" closed* ")" ext ")"
//   complex  = "((" closed* ")" ext ")"            -- every closed child an "S"
//   withunit = '"' unit '"' complex
// Numbers are written with "%lf" (fixed, six decimals: values are rounded to 1e-6, a precision that
// is part of the format; writers can be switched to full precision) and "." as decimal point; they
// are read with _wtof, so a number token that does not parse reads as 0. An arc is stored by
// centre, radius, start angle and sweep; its start point is rebuilt on reading from the rounded
// radius and angle. Keywords are written upper-case and read case-insensitively. `ext` is text
// appended by a derived writer's extension hook and handed to a derived reader's hook (empty and
// ignored by the base classes). The unit name is written as it is, without escapes.
//
// Errors: every reader fault throws ContourTextError, which carries the code and the table it
// belongs to (tokenizer, edge reader, contour reader); the code is also left in the reader
// (GetError). LAContourReader::read turns errors into false. The closed and complex readers let
// them propagate: a node under construction belongs to the reader until it is attached or returned,
// so a failed read leaves nothing behind for the caller to delete. Readers never crash, hang or
// leak on malformed input; structures nested deeper than kMaxNesting are refused.
//
// Character classes are those of the "C" locale (ASCII white space and letters), so a text reads
// the same on every machine whatever the process locale.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

// The error of a contour text reader.
class ContourTextError : public std::runtime_error {
public:
    // Which code table `code` belongs to.
    enum class Origin {
        token,    // TokenReader::ErrorTypes (0 to 10)
        edge,     // LAContourReader::ErrorTypes (1, 2)
        contour,  // ProClosedContourReader::ErrorTypes, shared by the complex readers (0 to 3)
    };

    ContourTextError(Origin origin, int code, int line, std::size_t position,
                     const std::string& what);

    Origin origin;
    int code;
    int line;              // newlines skipped before the fault (0 on the first line)
    std::size_t position;  // read position in the text when the fault was found
};

// Splits a contour text into tokens.
class TokenReader {
public:
    enum TokenType {
        OpeningBrace = 0,  // "("
        ClosingBrace = 1,  // ")"
        String = 2,        // text between double quotes
        Keyword = 3,       // a run starting with a letter, upper-cased
        Number = 4,        // any other run
    };
    enum ErrorTypes {
        NoError = -1,
        EndOfText = 0,             // a token requested at or after the end of the text
        OnlyWhiteSpace = 1,        // only white space remains
        UnclosedString = 3,        // a string without its closing double quote
        UnendedRun = 4,            // a keyword or number runs to the end of the text
        BraceExpected = 5,         // ExpectBrace: neither "(" nor ")"
        OpeningBraceExpected = 6,  // ExpectOpeningBrace: not "("
        ClosingBraceExpected = 7,  // ExpectClosingBrace: not ")"
        KeywordExpected = 8,       // ExpectKeyword: not a keyword
        TooManyClosing = 9,        // Skip2Closing: a ")" with no "(" open
        StringExpected = 10,       // ExpectString: not a string
    };

    explicit TokenReader(std::wstring text);
    virtual ~TokenReader() = default;

    // Skips white space (counting newlines) and reads one token. A run (keyword or number) must be
    // ended by white space or a brace: one that reaches the end of the text is error 4 (kept: a
    // truncated text must not read as complete). In a string a backslash makes the next character
    // part of the string; nothing is unescaped, the token is the raw text between the quotes.
    TokenType ReadToken();
    // The current token's text.
    const std::wstring& GetString() const { return token; }

    // True for "(", false for ")": this is how every list ends.
    bool ExpectBrace();
    void ExpectOpeningBrace();
    void ExpectClosingBrace();
    void ExpectKeyword();
    void ExpectString();
    // Reads up to the ")" that closes the brace already open, counting nested braces, consumes it
    // and returns the raw text between the starting position and that brace.
    std::wstring Skip2Closing();

    int GetError() const { return error; }
    ContourTextError::Origin GetErrorOrigin() const { return errorOrigin; }
    TokenType GetTokenType() const { return type; }
    int GetLine() const { return line; }
    std::size_t GetPosition() const { return pos; }
    const std::wstring& GetText() const { return text; }

protected:
    // Records the error and throws it.
    [[noreturn]] void Raise(ContourTextError::Origin origin, int code, const std::string& what);
    [[noreturn]] void RaiseToken(ErrorTypes code);

private:
    int error = NoError;
    ContourTextError::Origin errorOrigin = ContourTextError::Origin::token;
    TokenType type = ClosingBrace;
    int line = 0;
    std::size_t pos = 0;
    int openBraces = 0;  // braces read and not yet closed
    std::wstring token;
    std::wstring text;
};

// Reads one line-arc contour: "(" edge* ")".
class LAContourReader : public TokenReader {
public:
    enum ErrorTypes {
        UnknownEdge = 1,     // an edge keyword other than "A" or "L"
        NumberExpected = 2,  // a number was expected
    };

    explicit LAContourReader(std::wstring input) : TokenReader(std::move(input)) {}

    // Reads a contour into GetLAContour(); false (the error left in GetError) on any fault.
    bool read();
    // The contour read last.
    const LAContour& GetLAContour() const { return contour; }

    double readDouble();
    Point2 readPoint2();
    // False when the list ends (")"), else true with `edge` filled in.
    bool readLAEdge(LAEdge& edge);

protected:
    // Like read, but errors propagate.
    void readContour();

    LAContour contour;
};

// Reads closed contours (a solid with its holes, or a hole), creating nodes through a factory.
class ProClosedContourReader : public LAContourReader {
public:
    enum ErrorTypes {
        UnknownContour = 0,  // a contour keyword other than "S" or "H"
        BadEdgeList = 1,     // the line-arc contour did not read
        WrongChild = 2,      // a child of the wrong kind, or nested deeper than kMaxNesting
        AttachFailed = 3,    // the factory gave no node, or it could not be attached
    };
    // Deepest nesting of solids within solids that the readers accept.
    static constexpr int kMaxNesting = 64;

    // Nodes are made by `factory` (which must outlive the reader), or by a default factory.
    explicit ProClosedContourReader(std::wstring input, ProContourFactory* nodeFactory = nullptr);
    // A copy would point at the other reader's default factory.
    ProClosedContourReader(const ProClosedContourReader&) = delete;
    ProClosedContourReader& operator=(const ProClosedContourReader&) = delete;

    // Reads "(" ... ")" and returns the new node, owned by the caller. At a ")" instead, sets
    // `end` and returns null: the enclosing list is over.
    ProClosedContour* read(bool& end);

protected:
    // Receives the text between the end of a contour's content and its closing brace. The base
    // ignores it; a derived reader may throw ContourTextError to refuse it.
    virtual void ReadExtension(ProContour& node, const std::wstring& extension);

    ProContourFactory& Factory() { return *factory; }
    ProClosedContour* readClosed(bool& end, int depth);
    [[noreturn]] void RaiseContour(ErrorTypes code, const std::string& what);

private:
    ProContourFactory defaultFactory;
    ProContourFactory* factory;
};

// Reads a whole complex contour: "((" closed* ")" ext ")".
class ProComplexContourReader : public ProClosedContourReader {
public:
    using ErrorTypes = ProClosedContourReader::ErrorTypes;

    explicit ProComplexContourReader(std::wstring input, ProContourFactory* nodeFactory = nullptr)
        : ProClosedContourReader(std::move(input), nodeFactory) {}

    // The new complex contour, owned by the caller; throws ContourTextError on a fault.
    ProComplexContour* read();
};

// Reads '"' unit '"' followed by a complex contour.
class ProComplexContourAndUnitReader : public ProComplexContourReader {
public:
    using ProComplexContourReader::ProComplexContourReader;

    // Stores the unit name (raw text between the quotes) in `unit` and returns the new complex
    // contour, owned by the caller; throws ContourTextError on a fault.
    ProComplexContour* read(std::wstring& unit);
};

// Writes one line-arc contour: "(" edge* ")".
class LAContourWriter {
public:
    virtual ~LAContourWriter() = default;

    std::wstring write(const LAContour& contour);

    // Off by default: numbers are written with "%lf", six decimals, the notation's own precision.
    // On: with 17 significant digits ("%.17g", an exponent where it is shorter, a negative zero as
    // 0), which the same readers read back to the same doubles. Straight edges, arc centres, radii,
    // angles and sweeps then survive a round trip exactly; an arc's start is rebuilt from them and
    // comes back within the rounding of cos and sin. Every writer of contour text has this switch.
    void SetFullPrecision(bool on) { fullPrecision = on; }
    bool GetFullPrecision() const { return fullPrecision; }

protected:
    void appendLAContour(std::wstring& out, const LAContour& contour) const;
    void appendEdge(std::wstring& out, const LAEdge& edge) const;

private:
    bool fullPrecision = false;
};

// Writes a closed contour: "(S" ... ")" for a solid with its holes, "(H" ... ")" for any other.
class ProClosedContourWriter : public LAContourWriter {
public:
    std::wstring write(const ProClosedContour& contour);

protected:
    // Text appended just before the closing brace of a closed or complex contour; empty here.
    virtual std::wstring WriteExtension(const ProContour& node);

    void appendClosed(std::wstring& out, const ProClosedContour& contour);
};

// Writes a complex contour: "((" solids ")" ext ")"; an empty one is "(())".
class ProComplexContourWriter : public ProClosedContourWriter {
public:
    std::wstring write(const ProComplexContour& contour);

protected:
    void appendComplex(std::wstring& out, const ProComplexContour& contour);
};

// Writes '"' unit '"' followed by the complex contour.
class ProComplexContourAndUnitWriter : public ProComplexContourWriter {
public:
    explicit ProComplexContourAndUnitWriter(std::wstring unitName = std::wstring())
        : unit(std::move(unitName)) {}

    std::wstring write(const ProComplexContour& contour);
    const std::wstring& GetUnit() const { return unit; }
    void SetUnit(std::wstring unitName) { unit = std::move(unitName); }

private:
    std::wstring unit;
};

}  // namespace quillon
