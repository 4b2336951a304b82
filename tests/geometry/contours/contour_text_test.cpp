// Contour text: the notation byte for byte, every error code, bounded nesting, the extension hooks,
// and seeded garbage: every input ends in a tree or in ContourTextError, nothing leaks, and an
// accepted tree writes and reads back with the same shape.
#include "quillon/geometry/contours/contour_text.h"

#include <functional>
#include <tuple>

#include "las_test_support.h"
#include "quillon/platform/text.h"

namespace quillon {
namespace {

using namespace las_test;

using ContourText = LeakChecked;

using Origin = ContourTextError::Origin;
using Owned = std::unique_ptr<ProComplexContour>;

const std::wstring kExample =
    L"\"m\"(((S((L 0.000000 0.000000)(L 1.000000 0.000000)(L 1.000000 1.000000)(L 0.000000 "
    L"1.000000)) 0 ((H((L 0.200000 0.200000)(L 0.400000 0.200000)(L 0.300000 0.400000)))))))";

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

Owned ReadComplex(const std::wstring& text) { return Owned(ProComplexContourReader(text).read()); }

// The tree of a text with unit, or null after a ContourTextError.
Owned TryRead(const std::wstring& text, std::wstring& unit) {
    try {
        return Owned(ProComplexContourAndUnitReader(text).read(unit));
    } catch (const ContourTextError&) {
        return nullptr;
    }
}

TEST_F(ContourText, CompleteExampleTextByteForByte) {
    const Owned tree = MakeShape(Polygon({{0, 0}, {1, 0}, {1, 1}, {0, 1}}),
                                 {Polygon({{0.2, 0.2}, {0.4, 0.2}, {0.3, 0.4}})});
    ProComplexContourAndUnitWriter writer(L"m");
    EXPECT_EQ(writer.write(*tree), kExample);
    std::wstring unit;
    const Owned back = TryRead(kExample, unit);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(unit, L"m");
    EXPECT_NE(dynamic_cast<ProEmptyContour*>(back->SolidChild(0)->ClosedChild(0)), nullptr);
    EXPECT_EQ(writer.write(*back), kExample);
}

TEST_F(ContourText, SmallFormsOfTheNotation) {
    EXPECT_EQ(ProComplexContourWriter().write(ProComplexContour()), L"(())");
    EXPECT_EQ(ReadComplex(L"(())")->ChildrenCount(), 0u);
    // A solid without holes, with and without its attribute number; keywords in any case.
    ProSolidContour solid(Polygon({{1, 2}}));
    solid.attribute = -12;
    EXPECT_EQ(ProClosedContourWriter().write(solid), L"(S((L 1.000000 2.000000)) -12 ())");
    EXPECT_EQ(ProClosedContourWriter().write(ProEmptyContour(Polygon({{3, 4}}))),
              L"(H((L 3.000000 4.000000)))");
    EXPECT_EQ(ReadComplex(L"(((S((L 1 2)) 5 ())))")->SolidChild(0)->attribute, 5);
    std::wstring unit;
    EXPECT_NE(TryRead(L"\"a\\\"b\"(())", unit), nullptr);
    EXPECT_EQ(unit, L"a\\\"b");  // the escape stays as written
    auto b = ReadComplex(L" ( ( (s ((l 1 2) ) ( ) ) ) ) ");
    EXPECT_EQ(b->SolidChild(0)->attribute, 0);
    ASSERT_EQ(b->SolidChild(0)->size(), 1u);
    EXPECT_EQ(b->SolidChild(0)->front().start.y, 2.0);
    // Numbers follow _wtof/_wtoi: a token that does not parse is 0, a fraction is cut.
    auto c = ReadComplex(L"(((S((L -x 1e1) (L .5 +2)) 3.9 ())))");
    EXPECT_EQ(c->SolidChild(0)->attribute, 3);
    EXPECT_EQ((*c->SolidChild(0))[0].start.x, 0.0);
    EXPECT_EQ((*c->SolidChild(0))[0].start.y, 10.0);
    EXPECT_EQ((*c->SolidChild(0))[1].start.x, 0.5);
    // The line-arc contour alone.
    EXPECT_EQ(LAContourWriter().write(LAContour()), L"()");
    LAContourReader la(L"\n(\n(L 1 1)\n(A 0 0 1 0 1.5)\n)");
    ASSERT_TRUE(la.read());
    EXPECT_EQ(la.GetLAContour().size(), 2u);
    EXPECT_EQ(la.GetLine(), 4);
}

TEST_F(ContourText, ArcStartIsRebuiltFromRoundedRadiusAndAngle) {
    const Point2 centre(1.25, -2.0);
    const double r = 2.3456789, a0 = 0.987654321;
    LAContour c;
    c.push_back(LAEdge(centre + Vector2(r * std::cos(a0), r * std::sin(a0)), centre, -1.23456789));
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
    EXPECT_EQ(writer.write(reader.GetLAContour()), text);
}

// Kept deliberately strict: a text cut after a number must not read as complete.
TEST_F(ContourText, RunReachingEndOfTextIsError4) {
    LAContourReader la(L"((L 1 2");
    EXPECT_FALSE(la.read());
    EXPECT_EQ(la.GetError(), TokenReader::UnendedRun);
    EXPECT_EQ(la.GetErrorOrigin(), Origin::token);
    TokenReader t(L"(L");
    t.ExpectOpeningBrace();
    EXPECT_EQ(Thrown([&] { t.ReadToken(); }).code, 4);
}

TEST_F(ContourText, EveryErrorCodeFromAMinimalText) {
    using Case = std::tuple<const wchar_t*, Origin, int>;
    // Through the complex-with-unit reader, the outermost one.
    const Case cases[] = {{L"", Origin::token, 0},
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
                          {L"\"m\"(((S()()))", Origin::token, 0}};
    for (const auto& [text, origin, code] : cases) {
        SCOPED_TRACE(testing::Message() << "text: " << platform::ToUtf8(text));
        std::wstring unit;
        ProComplexContourAndUnitReader reader(text);
        const ContourTextError e = Thrown([&] { delete reader.read(unit); });
        EXPECT_EQ(e.origin, origin);
        EXPECT_EQ(e.code, code);
        EXPECT_EQ(reader.GetError(), code);
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore);
    }
    // The edge reader's own codes, and the tokenizer codes only reachable directly.
    const Case edgeCases[] = {{L"((Q 1 2))", Origin::edge, LAContourReader::UnknownEdge},
                              {L"((A 1 2 3 (", Origin::edge, LAContourReader::NumberExpected},
                              {L"((L 1 2 3))", Origin::token, TokenReader::ClosingBraceExpected}};
    for (const auto& [text, origin, code] : edgeCases) {
        LAContourReader la(text);
        EXPECT_FALSE(la.read());
        EXPECT_EQ(la.GetErrorOrigin(), origin);
        EXPECT_EQ(la.GetError(), code);
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
}

TEST_F(ContourText, NestingIsBounded) {
    auto nested = [](int levels) {
        std::wstring text = L"((";
        for (int i = 0; i < levels; ++i) text += L"(S() 0 (";
        for (int i = 0; i < levels; ++i) text += L"))";
        return text + L"))";
    };
    const int most = ProClosedContourReader::kMaxNesting;
    const Owned deep = ReadComplex(nested(most));
    const ProContour* node = deep.get();
    for (int depth = 0; depth < most; ++depth) node = node->ContourChild(0);
    EXPECT_EQ(node->ChildrenCount(), 0u);
    EXPECT_EQ(dynamic_cast<const ProClosedContour*>(node)->ClosedContourLevel(), most - 1);
    const ContourTextError e = Thrown([&] { ReadComplex(nested(most + 1)); });
    EXPECT_EQ(e.origin, Origin::contour);
    EXPECT_EQ(e.code, ProClosedContourReader::WrongChild);
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
    void ReadExtension(ProContour&, const std::wstring& extension) override {
        seen.push_back(extension);
        if (extension == L" refuse") Raise(Origin::contour, WrongChild, "refused");
    }
};

TEST_F(ContourText, ExtensionHooksCarryExtraText) {
    const std::wstring plainText =
        ProComplexContourWriter().write(*ReadComplex(kExample.substr(3)));
    TaggingWriter writer;
    const std::wstring text = writer.write(*ReadComplex(plainText));
    EXPECT_NE(text.find(L"))) (tag 1))"), std::wstring::npos);
    EXPECT_EQ(text.substr(text.size() - 7), L") done)");
    TagReader reader(text);
    std::unique_ptr<ProComplexContour> back(reader.read());
    EXPECT_EQ(reader.seen, (std::vector<std::wstring>{L"", L" (tag 1)", L" done"}));
    EXPECT_EQ(writer.write(*back), text);
    // The base classes ignore the extra text.
    EXPECT_EQ(ProComplexContourWriter().write(*ReadComplex(text)), plainText);
    // A hook that refuses its text leaves nothing behind.
    TagReader refusing(L"(((S() 0 ((H() refuse)))))");
    EXPECT_EQ(Thrown([&] { delete refusing.read(); }).code, ProClosedContourReader::WrongChild);
}

int CountNodes(const ProContour& node) {
    int n = 1;
    for (unsigned long i = 0; i < node.ChildrenCount(); ++i) n += CountNodes(*node.ContourChild(i));
    return n;
}

const std::wstring kSeeds[] = {
    kExample,
    L"\"mm\"(((S((A 0.000000 0.000000 2.000000 0.000000 3.141593)(A 0.000000 0.000000 2.000000 "
    L"3.141593 3.141593)) -4 ((H((L -1 -1)(L 1 -1)(L 0 1)) x)(S((L 5 5)) 1 ())))(S() ())) ext)",
    L"\"a\\\"b\"(())",
    L"\"\"(((s((l 1 2)(a 3 4 5 6 7)) ())))",
};

std::wstring Mutate(std::wstring text, std::mt19937& rng) {
    static const wchar_t alphabet[] = L"()\"\\ \n\tSHLAsx0123456789.-+e";
    std::uniform_int_distribution<int> pickChar(0, static_cast<int>(std::size(alphabet)) - 2);
    for (int k = std::uniform_int_distribution<int>(1, 4)(rng); k > 0; --k) {
        const std::size_t n = text.size();
        const std::size_t at =
            n == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, n - 1)(rng);
        const int kind = std::uniform_int_distribution<int>(0, 4)(rng);
        if (kind == 0 && n > 0) text.erase(at, 1);
        if (kind == 1) text.insert(at, 1, alphabet[pickChar(rng)]);
        if (kind == 2 && n > 0) text[at] = alphabet[pickChar(rng)];
        if (kind == 3) text.resize(at);
        if (kind == 4)  // repeat a slice
            text.insert(at,
                        text.substr(at, std::uniform_int_distribution<std::size_t>(0, 12)(rng)));
    }
    return text;
}

TEST_F(ContourText, ProperPrefixesNeverReadAsComplete) {
    for (const std::wstring& seed : kSeeds) {
        std::wstring unit;
        ASSERT_NE(TryRead(seed, unit), nullptr);
        for (std::size_t len = 0; len < seed.size(); ++len)
            EXPECT_EQ(TryRead(seed.substr(0, len), unit), nullptr) << len;
    }
}

TEST_F(ContourText, SeededGarbageIsAnsweredCleanly) {
    std::mt19937 rng(77031);
    int accepted = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::wstring text = Mutate(kSeeds[round % std::size(kSeeds)], rng);
        std::wstring unit, unit2;
        if (Owned tree = TryRead(text, unit)) {
            ++accepted;
            const int nodes = CountNodes(*tree);
            EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + nodes);
            const Owned back = TryRead(ProComplexContourAndUnitWriter(unit).write(*tree), unit2);
            ASSERT_NE(back, nullptr) << "rewritten text did not read: round " << round;
            EXPECT_EQ(unit2, unit);
            EXPECT_EQ(CountNodes(*back), nodes);
        }
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore) << "round " << round;
        LAContourReader la(text);  // the line-arc reader reports by its result alone
        (void)la.read();
    }
    // The mutations are mild enough that some texts still read; both paths are exercised.
    EXPECT_GT(accepted, 50);
    EXPECT_LT(accepted, 3900);
}

}  // namespace
}  // namespace quillon
