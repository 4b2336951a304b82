#include "quillon/geometry/contours/contour_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "quillon/platform/text.h"

namespace quillon {
namespace {

using Origin = ContourTextError::Origin;

LAContour Polygon(std::initializer_list<Point2> points) {
    LAContour c;
    for (const Point2& p : points) c.push_back(LAEdge(p));
    return c;
}

// The unit square with a triangular hole, in unit m.
std::unique_ptr<ProComplexContour> SquareWithTriangle() {
    ProContourFactory f;
    std::unique_ptr<ProComplexContour> complex(f.CreateComplexContour());
    ProSolidContour* solid = complex->Attach(f.CreateSolidContour());
    solid->SetLAContour(Polygon({{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
    solid->Attach(
        f.CreateEmptyContour()->SetLAContour(Polygon({{0.2, 0.2}, {0.4, 0.2}, {0.3, 0.4}})));
    return complex;
}

const std::wstring kExample =
    L"\"m\""
    L"(("
    L"(S((L 0.000000 0.000000)(L 1.000000 0.000000)(L 1.000000 1.000000)(L 0.000000 1.000000)) 0 ("
    L"(H((L 0.200000 0.200000)(L 0.400000 0.200000)(L 0.300000 0.400000)))"
    L")"
    L")"
    L"))";

// Runs `body` and returns the error it throws; fails the test when it throws none.
ContourTextError Thrown(const std::function<void()>& body) {
    try {
        body();
    } catch (const ContourTextError& e) {
        return e;
    }
    ADD_FAILURE() << "no ContourTextError";
    return ContourTextError(Origin::token, -1, 0, 0, "none");
}

std::unique_ptr<ProComplexContour> ReadComplex(const std::wstring& text) {
    ProComplexContourReader reader(text);
    return std::unique_ptr<ProComplexContour>(reader.read());
}

TEST(ContourText, CompleteExampleTextByteForByte) {
    const int before = ProContour::get_contour_allocs();
    {
        auto tree = SquareWithTriangle();
        ProComplexContourAndUnitWriter writer(L"m");
        EXPECT_EQ(writer.write(*tree), kExample);

        std::wstring unit;
        ProComplexContourAndUnitReader reader(kExample);
        std::unique_ptr<ProComplexContour> back(reader.read(unit));
        EXPECT_EQ(unit, L"m");
        ASSERT_EQ(back->ChildrenCount(), 1u);
        ASSERT_EQ(back->SolidChild(0)->ChildrenCount(), 1u);
        EXPECT_NE(dynamic_cast<ProEmptyContour*>(back->SolidChild(0)->ClosedChild(0)), nullptr);
        EXPECT_EQ(back->SolidChild(0)->attribute, 0);
        EXPECT_EQ(writer.write(*back), kExample);
    }
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(ContourText, SmallFormsOfTheNotation) {
    ProComplexContourWriter writer;
    ProContourFactory f;
    std::unique_ptr<ProComplexContour> empty(f.CreateComplexContour());
    EXPECT_EQ(writer.write(*empty), L"(())");
    EXPECT_EQ(ReadComplex(L"(())")->ChildrenCount(), 0u);

    // A solid without holes, with and without its attribute number; keywords in any case.
    ProClosedContourWriter closedWriter;
    ProSolidContour solid(Polygon({{1, 2}}));
    solid.attribute = -12;
    EXPECT_EQ(closedWriter.write(solid), L"(S((L 1.000000 2.000000)) -12 ())");
    ProEmptyContour hole(Polygon({{3, 4}}));
    EXPECT_EQ(closedWriter.write(hole), L"(H((L 3.000000 4.000000)))");

    auto a = ReadComplex(L"(((S((L 1 2)) 5 ())))");
    EXPECT_EQ(a->SolidChild(0)->attribute, 5);
    EXPECT_EQ(a->SolidChild(0)->ChildrenCount(), 0u);
    auto b = ReadComplex(L" ( ( (s ((l 1 2) ) ( ) ) ) ) ");
    EXPECT_EQ(b->SolidChild(0)->attribute, 0);
    ASSERT_EQ(b->SolidChild(0)->size(), 1u);
    EXPECT_EQ(b->SolidChild(0)->front().type, 0);
    EXPECT_EQ(b->SolidChild(0)->front().start.y, 2.0);

    // Numbers follow _wtof/_wtoi: a token that does not parse is 0, a fraction is cut.
    auto c = ReadComplex(L"(((S((L -x 1e1) (L .5 +2)) 3.9 ())))");
    EXPECT_EQ(c->SolidChild(0)->attribute, 3);
    EXPECT_EQ((*c->SolidChild(0))[0].start.x, 0.0);
    EXPECT_EQ((*c->SolidChild(0))[0].start.y, 10.0);
    EXPECT_EQ((*c->SolidChild(0))[1].start.x, 0.5);

    // The line-arc contour alone.
    LAContourWriter laWriter;
    EXPECT_EQ(laWriter.write(LAContour()), L"()");
    LAContourReader la(L"\n(\n(L 1 1)\n(A 0 0 1 0 1.5)\n)");
    ASSERT_TRUE(la.read());
    EXPECT_EQ(la.GetLAContour().size(), 2u);
    EXPECT_EQ(la.GetLine(), 4);
}

TEST(ContourText, ArcStartIsRebuiltFromRoundedRadiusAndAngle) {
    const Point2 centre(1.25, -2.0);
    const double r = 2.3456789, a0 = 0.987654321, sweep = -1.23456789;
    LAContour c;
    c.push_back(LAEdge(centre + Vector2(r * std::cos(a0), r * std::sin(a0)), centre, sweep));
    c.push_back(LAEdge(Point2(0.1234564, -7.0000004)));
    LAContourWriter writer;
    const std::wstring text = writer.write(c);
    EXPECT_EQ(text, L"((A 1.250000 -2.000000 2.345679 0.987654 -1.234568)(L 0.123456 -7.000000))");

    LAContourReader reader(text);
    ASSERT_TRUE(reader.read());
    const LAEdge& arc = reader.GetLAContour()[0];
    EXPECT_EQ(arc.type, 1);
    EXPECT_DOUBLE_EQ(arc.centre.x, 1.25);
    EXPECT_DOUBLE_EQ(arc.angle, -1.234568);
    EXPECT_DOUBLE_EQ(arc.start.x, 1.25 + 2.345679 * std::cos(0.987654));
    EXPECT_DOUBLE_EQ(arc.start.y, -2.0 + 2.345679 * std::sin(0.987654));
    EXPECT_NEAR(arc.rad_arc(), r, 1e-6);
    EXPECT_EQ(writer.write(reader.GetLAContour()), text);
}

TEST(ContourText, TokenReaderTokensStringsAndLines) {
    TokenReader t(L"( ) \"a\\\"b\" key7x 12.5e3\n\n-x (");
    EXPECT_EQ(t.ReadToken(), TokenReader::OpeningBrace);
    EXPECT_EQ(t.ReadToken(), TokenReader::ClosingBrace);
    EXPECT_EQ(t.ReadToken(), TokenReader::String);
    EXPECT_EQ(t.GetString(), L"a\\\"b");  // the escape stays as written
    EXPECT_EQ(t.ReadToken(), TokenReader::Keyword);
    EXPECT_EQ(t.GetString(), L"KEY7X");
    EXPECT_EQ(t.ReadToken(), TokenReader::Number);
    EXPECT_EQ(t.GetString(), L"12.5e3");
    EXPECT_EQ(t.GetLine(), 0);
    EXPECT_EQ(t.ReadToken(), TokenReader::Number);
    EXPECT_EQ(t.GetString(), L"-x");
    EXPECT_EQ(t.GetLine(), 2);
    EXPECT_TRUE(t.ExpectBrace());

    // Skip2Closing returns the raw text up to the matching brace and consumes it.
    TokenReader s(L"(a (b (c)) \")\" d) e ");
    s.ExpectOpeningBrace();
    EXPECT_EQ(s.Skip2Closing(), L"a (b (c)) \")\" d");
    s.ExpectKeyword();
    EXPECT_EQ(s.GetString(), L"E");
}

// Kept deliberately strict: a text cut after a number must not read as complete.
TEST(ContourText, RunReachingEndOfTextIsError4) {
    LAContourReader la(L"((L 1 2");
    EXPECT_FALSE(la.read());
    EXPECT_EQ(la.GetError(), TokenReader::UnendedRun);
    EXPECT_EQ(la.GetErrorOrigin(), Origin::token);

    TokenReader t(L"(L");
    t.ExpectOpeningBrace();
    EXPECT_EQ(Thrown([&] { t.ReadToken(); }).code, 4);
    TokenReader done(L"x ");
    done.ReadToken();
    EXPECT_EQ(Thrown([&] { done.ReadToken(); }).code, 1);
    EXPECT_EQ(Thrown([&] { TokenReader(L"").ReadToken(); }).code, 0);
}

TEST(ContourText, EveryErrorCodeFromAMinimalText) {
    struct Case {
        const wchar_t* text;
        Origin origin;
        int code;
    };
    // Through the complex-with-unit reader, the outermost one.
    const Case cases[] = {
        {L"", Origin::token, 0},
        {L"  \n ", Origin::token, 1},
        {L"\"m", Origin::token, 3},
        {L"\"m\\\"", Origin::token, 3},
        {L"\"m\"(((S", Origin::token, 4},
        {L"x ", Origin::token, 10},
        {L"\"m\"x ", Origin::token, 6},
        {L"\"m\"(x ", Origin::token, 6},
        {L"\"m\"((x ", Origin::token, 5},
        {L"\"m\"((() ", Origin::token, 8},
        {L"\"m\"(((X ", Origin::contour, 0},
        {L"\"m\"(((S( ", Origin::contour, 1},
        {L"\"m\"(((S((Q 1 2)) ", Origin::contour, 1},
        {L"\"m\"(((S() x ", Origin::token, 6},
        {L"\"m\"(((S() 1 x ", Origin::token, 6},
        {L"\"m\"(((H()) ", Origin::contour, 2},
        {L"\"m\"(((S()()) ", Origin::token, 1},
        {L"\"m\"(((S()()))", Origin::token, 0},
    };
    const int before = ProContour::get_contour_allocs();
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "text: " << platform::ToUtf8(c.text));
        std::wstring unit;
        ProComplexContourAndUnitReader reader(c.text);
        const ContourTextError e = Thrown([&] { delete reader.read(unit); });
        EXPECT_EQ(e.origin, c.origin);
        EXPECT_EQ(e.code, c.code);
        EXPECT_EQ(reader.GetError(), c.code);
        EXPECT_EQ(ProContour::get_contour_allocs(), before);
    }

    // The edge reader's own codes, and the tokenizer codes only reachable directly.
    const Case edgeCases[] = {{L"((Q 1 2))", Origin::edge, LAContourReader::UnknownEdge},
                              {L"((A 1 2 3 (", Origin::edge, LAContourReader::NumberExpected},
                              {L"((L 1 2 3))", Origin::token, TokenReader::ClosingBraceExpected}};
    for (const Case& c : edgeCases) {
        LAContourReader la(c.text);
        EXPECT_FALSE(la.read());
        EXPECT_EQ(la.GetErrorOrigin(), c.origin);
        EXPECT_EQ(la.GetError(), c.code);
    }
    TokenReader stray(L") ");
    EXPECT_EQ(Thrown([&] { stray.Skip2Closing(); }).code, TokenReader::TooManyClosing);
    EXPECT_EQ(stray.GetError(), 9);

    // A factory that gives no node makes the attachment fail.
    struct NoHoles : ProContourFactory {
        ProEmptyContour* CreateEmptyContour() override { return nullptr; }
    } noHoles;
    ProComplexContourReader reader(L"(((S() ((H())))) ", &noHoles);
    const ContourTextError e = Thrown([&] { delete reader.read(); });
    EXPECT_EQ(e.origin, Origin::contour);
    EXPECT_EQ(e.code, ProClosedContourReader::AttachFailed);
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(ContourText, NestingIsBounded) {
    const int before = ProContour::get_contour_allocs();
    auto nested = [](int levels) {
        std::wstring text = L"((";
        for (int i = 0; i < levels; ++i) text += L"(S() 0 (";
        for (int i = 0; i < levels; ++i) text += L"))";
        return text + L"))";
    };
    {
        auto deep = ReadComplex(nested(ProClosedContourReader::kMaxNesting));
        const ProContour* node = deep.get();
        int depth = 0;
        while (node->ChildrenCount() > 0) {
            node = node->ContourChild(0);
            ++depth;
        }
        EXPECT_EQ(depth, ProClosedContourReader::kMaxNesting);
        EXPECT_EQ(dynamic_cast<const ProClosedContour*>(node)->ClosedContourLevel(),
                  ProClosedContourReader::kMaxNesting - 1);
    }
    const ContourTextError e =
        Thrown([&] { ReadComplex(nested(ProClosedContourReader::kMaxNesting + 1)); });
    EXPECT_EQ(e.origin, Origin::contour);
    EXPECT_EQ(e.code, ProClosedContourReader::WrongChild);
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

// Writers and readers that carry extra text at the end of closed and complex contours.
struct TaggingWriter : ProComplexContourWriter {
    std::wstring WriteExtension(const ProContour& node) override {
        if (auto* s = dynamic_cast<const ProSolidContour*>(&node))
            return L" (tag " + std::to_wstring(s->ChildrenCount()) + L")";
        return dynamic_cast<const ProComplexContour*>(&node) != nullptr ? L" done" : L"";
    }
};
struct TagReader : ProComplexContourReader {
    using ProComplexContourReader::ProComplexContourReader;
    std::vector<std::wstring> seen;
    void ReadExtension(ProContour& node, const std::wstring& extension) override {
        seen.push_back(extension);
        if (extension == L" refuse") Raise(Origin::contour, WrongChild, "refused");
        (void)node;
    }
};

TEST(ContourText, ExtensionHooksCarryExtraText) {
    auto tree = SquareWithTriangle();
    TaggingWriter writer;
    const std::wstring text = writer.write(*tree);
    EXPECT_NE(text.find(L"))) (tag 1))"), std::wstring::npos);
    EXPECT_EQ(text.substr(text.size() - 7), L") done)");

    TagReader reader(text);
    std::unique_ptr<ProComplexContour> back(reader.read());
    EXPECT_EQ(reader.seen, (std::vector<std::wstring>{L"", L" (tag 1)", L" done"}));
    EXPECT_EQ(writer.write(*back), text);

    // The base classes ignore the extra text.
    auto plain = ReadComplex(text);
    EXPECT_EQ(ProComplexContourWriter().write(*plain), ProComplexContourWriter().write(*tree));

    // A hook that refuses its text leaves nothing behind.
    const int before = ProContour::get_contour_allocs();
    TagReader refusing(L"(((S() 0 ((H() refuse)))))");
    EXPECT_EQ(Thrown([&] { delete refusing.read(); }).code, ProClosedContourReader::WrongChild);
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

// Random trees of lines and arcs, written, read and written again.
std::unique_ptr<ProComplexContour> RandomTree(std::mt19937& rng) {
    std::uniform_real_distribution<double> coord(-50.0, 50.0), radius(0.01, 20.0), angle(-3.1, 3.1);
    std::uniform_int_distribution<int> small(0, 3), edges(1, 6), attr(-1000, 1000);
    auto contour = [&] {
        LAContour c;
        const int n = edges(rng);
        for (int i = 0; i < n; ++i) {
            const Point2 p(coord(rng), coord(rng));
            if (small(rng) == 0) {
                const double r = radius(rng), a0 = angle(rng);
                c.push_back(LAEdge(p + Vector2(r * std::cos(a0), r * std::sin(a0)), p, angle(rng)));
            } else {
                c.push_back(LAEdge(p));
            }
        }
        return c;
    };
    ProContourFactory f;
    std::unique_ptr<ProComplexContour> complex(f.CreateComplexContour());
    const int solids = small(rng);
    for (int s = 0; s < solids; ++s) {
        ProSolidContour* solid = complex->Attach(f.CreateSolidContour()->SetLAContour(contour()));
        solid->attribute = attr(rng);
        const int holes = small(rng);
        for (int h = 0; h < holes; ++h)
            solid->Attach(f.CreateEmptyContour()->SetLAContour(contour()));
    }
    return complex;
}

void ExpectSameGeometry(const LAContour& a, const LAContour& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(a[i].type, b[i].type);
        if (a[i].type == 0) {
            EXPECT_NEAR(a[i].start.x, b[i].start.x, 1e-6);
            EXPECT_NEAR(a[i].start.y, b[i].start.y, 1e-6);
        } else {
            EXPECT_NEAR(a[i].centre.x, b[i].centre.x, 1e-6);
            EXPECT_NEAR(a[i].centre.y, b[i].centre.y, 1e-6);
            EXPECT_NEAR(a[i].rad_arc(), b[i].rad_arc(), 1e-6);
            EXPECT_NEAR(a[i].angle, b[i].angle, 1e-6);
            // The start moves by the rounding of radius and angle only.
            EXPECT_NEAR(a[i].start.distance(b[i].start), 0.0, 1e-6 * (2.0 + a[i].rad_arc()));
        }
    }
}

TEST(ContourText, RoundTripsOfRandomTrees) {
    const int before = ProContour::get_contour_allocs();
    std::mt19937 rng(20240611);
    for (int round = 0; round < 200; ++round) {
        auto tree = RandomTree(rng);
        ProComplexContourAndUnitWriter writer(L"kN/m\u00b2");
        const std::wstring text = writer.write(*tree);
        std::wstring unit;
        ProComplexContourAndUnitReader reader(text);
        std::unique_ptr<ProComplexContour> back(reader.read(unit));
        EXPECT_EQ(unit, L"kN/m\u00b2");
        ASSERT_EQ(back->ChildrenCount(), tree->ChildrenCount());
        for (unsigned long s = 0; s < tree->ChildrenCount(); ++s) {
            const ProSolidContour* a = tree->SolidChild(s);
            const ProSolidContour* b = back->SolidChild(s);
            EXPECT_EQ(a->attribute, b->attribute);
            ExpectSameGeometry(*a, *b);
            ASSERT_EQ(a->ChildrenCount(), b->ChildrenCount());
            for (unsigned long h = 0; h < a->ChildrenCount(); ++h)
                ExpectSameGeometry(*a->ClosedChild(h), *b->ClosedChild(h));
        }
        EXPECT_EQ(writer.write(*back), text) << "round " << round;
    }
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

}  // namespace
}  // namespace quillon
