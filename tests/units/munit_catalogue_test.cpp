// The base-unit catalogue, its singleton and the rules of the type table.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <limits>

#include "munit_fixture.h"
#include "quillon/platform/text.h"

namespace quillon::munit::testing {
namespace {

using CatalogueTest = MUnitFixture;

constexpr MUNIT_T L = MUNIT_LENGTH, F = MUNIT_FORCE, M = MUNIT_MASS, A = MUNIT_ANGLE,
                  N = MUNIT_NONE;

struct DefaultUnit {
    MUNIT_T kind;
    const wchar_t* name;
    double factor;
};

// Written out independently of the library: the factors are exact double constants (Deg and Grad
// kept rounded, not pi/180 and pi/200).
// clang-format off
const DefaultUnit kDefaults[] = {
    {L, L"cm", 0.01}, {L, L"ft", 0.3048}, {L, L"in", 0.0254}, {L, L"m", 1.0}, {L, L"mm", 0.001},
    {F, L"MN", 1000000.0}, {F, L"N", 1.0}, {F, L"T", 9806.65}, {F, L"USTons", 8896.446},
    {F, L"daN", 10.0}, {F, L"kG", 9.80665}, {F, L"kN", 1000.0}, {F, L"kip", 4448.2216152605},
    {F, L"lb", 4.4482216152605}, {M, L"lb", 0.4535925112041}, {M, L"kg", 1.0}, {M, L"t", 1000.0},
    {M, L"ustons", 907.1850224083}, {A, L"Deg", 0.01745329251994}, {A, L"Rad", 1.0},
    {A, L"Grad", 0.01570796326795}};
// clang-format on

TEST_F(CatalogueTest, DefaultTableHasEveryFactorInOrder) {
    MInitUnit* init = GetMInit();
    int index[5] = {};
    for (const DefaultUnit& d : kDefaults) {
        SCOPED_TRACE(platform::ToUtf8(d.name));
        const Unit u = init->GetUnit(d.kind, index[d.kind]++);
        EXPECT_TRUE(u.name == d.name && u.coef == d.factor);
        EXPECT_EQ(init->GetCoeffUnit(d.kind, d.name), d.factor);
    }
    for (int k = L; k <= A; ++k) EXPECT_EQ(init->GetTotalUnit(static_cast<MUNIT_T>(k)), index[k]);
}

TEST_F(CatalogueTest, NamesCompareCaseSensitivelyInsideTheirKind) {
    // "T" and "t" are told apart by the table above.
    MInitUnit* init = GetMInit();
    EXPECT_EQ(init->GetCoeffUnit(F, L"t") + init->GetCoeffUnit(L, L"kN"), 0.0);
    EXPECT_EQ(init->GetCoeffUnit(L, L"M"), 0.0);
    init->SetCorrectQuantity(false);
    EXPECT_EQ(init->GetCoeffUnit(L, L"M"), 1.0);
    // Kinds without a list never give a factor, whatever the flag says.
    for (MUNIT_T kind : {N, MUNIT_FIFTH, static_cast<MUNIT_T>(-3)}) {
        EXPECT_TRUE(init->GetCoeffUnit(kind, L"m") == 0.0 && init->GetTotalUnit(kind) == 0);
        EXPECT_TRUE(init->EraseUnit(kind, 0) == 2 && init->GetUnit(kind, 0).name.empty());
    }
    MUnit mu;  // erases "ft" then "cm"; GetUnit one past the last has no name
    EXPECT_TRUE(mu.EraseUnit(L, 5) == 1 && mu.EraseUnit(L, -1) == 1 &&
                mu.GetUnit(L, 5).name.empty());
    EXPECT_TRUE(mu.EraseUnit(L, 1) == 0 && mu.EraseUnit(L, 0) == 0);
    EXPECT_TRUE(mu.GetTotalUnit(L) == 3 && mu.GetNameUnit(L, 0) == L"in");
}

TEST_F(CatalogueTest, SingletonLifecycle) {
    MInitUnit* first = GetMInit();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(InitMInit(false), 1);
    EXPECT_TRUE(GetMInit() == first && first->GetCorrectQuantity());
    EXPECT_EQ(first->GetTotalUnit(L), 5);  // not filled twice

    DeleteMInit();
    EXPECT_EQ(GetMInit(), nullptr);
    MUnit early;  // made before a catalogue exists: holds none
    EXPECT_EQ(early.GetCoeffUnit(L, L"m"), 0.0);
    EXPECT_EQ(early.SetTypeUnit(T(7), 2, L"m", L"", L"", false), 1);
    EXPECT_EQ(early.UpDateUnit(), 1);

    ASSERT_EQ(InitMInit(false), 0);
    EXPECT_FALSE(GetMInit()->GetCorrectQuantity());
    EXPECT_EQ(MUnit().GetCoeffUnit(L, L"mm"), 0.001);
}

TEST_F(CatalogueTest, SetUnitFallsThroughToEveryLaterList) {
    MInitUnit* init = GetMInit();
    const MUNIT_T kinds[] = {L, F, M, A};
    int before[5] = {};
    for (MUNIT_T k : kinds) before[k] = init->GetTotalUnit(k);
    for (MUNIT_T added : kinds) {
        const std::wstring name = L"new" + std::to_wstring(added);
        const double factor = 2.0 + static_cast<int>(added);
        init->SetUnit(added, {name, factor});
        for (MUNIT_T k : kinds) EXPECT_EQ(init->GetCoeffUnit(k, name), k >= added ? factor : 0.0);
    }
    init->SetUnit(MUNIT_FIFTH, {L"x", 1.0});  // ignored
    init->SetUnit(N, {L"x", 1.0});
    for (MUNIT_T k : kinds) EXPECT_EQ(init->GetTotalUnit(k), before[k] + k);  // one per kind <= k
}

TEST_F(CatalogueTest, GlobUFallsBackToTheBuiltInTable) {
    EXPECT_EQ(SetGlobU(nullptr), &table_);
    TypeUnitTable& builtIn = GlobU();
    EXPECT_NE(&builtIn, &table_);
    TypeUnitTable other;
    EXPECT_EQ(SetGlobU(&other), &builtIn);
    ASSERT_EQ(MUnit().SetTypeUnit(T(7), 2, L"cm", L"", L"", false), 0);
    EXPECT_TRUE(other.size() == 1u && table_.empty());
    EXPECT_EQ(SetGlobU(&table_), &other);
}

// Every single type: the kinds GetTypeMunit gives it, the units chosen here, and the factor and
// name that UpDateUnit must derive (worked out by hand from the default factors).
struct TypeRule {
    int id;
    MUNIT_T k1, k2, k3;
    const wchar_t* u1;
    const wchar_t* u2;
    const wchar_t* u3;
    double coefficient;
    const wchar_t* name;
};

// clang-format off
const TypeRule kRules[] = {
    {7, L, N, N, L"cm", L"", L"", 0.01, L"cm"}, {8, L, N, N, L"mm", L"", L"", 0.001, L"mm"},
    {9, L, N, N, L"in", L"", L"", 0.0254, L"in"}, {10, L, N, N, L"m", L"", L"", 1.0, L"m"},
    {11, L, N, N, L"ft", L"", L"", 0.3048, L"ft"}, {16, L, N, N, L"mm", L"", L"", 0.001, L"mm"},
    {22, L, N, N, L"cm", L"", L"", 0.01, L"cm"}, {34, L, N, N, L"m", L"", L"", 1.0, L"m"},
    {12, L, L, N, L"cm", L"cm", L"", 1e-4, L"cm2"},
    {31, L, L, N, L"mm", L"m", L"", 1e-6, L"mm2"},  // the second unit plays no part
    {21, L, L, N, L"cm", L"m", L"", 1e-4, L"cm2/m"}, {33, L, L, L, L"cm", L"cm", L"cm", 1e-6, L"cm3"},
    {30, L, N, N, L"cm", L"", L"", 1e-8, L"cm4"}, {13, F, N, N, L"kN", L"", L"", 1000.0, L"kN"},
    {18, F, N, N, L"T", L"", L"", 9806.65, L"T"}, {14, F, L, N, L"kN", L"m", L"", 1000.0, L"kN*m"},
    {28, F, L, N, L"kN", L"cm", L"", 1e5, L"kN/cm"}, {15, F, L, N, L"kN", L"cm", L"", 1e7, L"kN/cm2"},
    {24, F, L, N, L"daN", L"cm", L"", 1e5, L"daN/cm2"}, {27, F, L, N, L"N", L"mm", L"", 1e6, L"N/mm2"},
    {29, F, L, N, L"MN", L"m", L"", 1e6, L"MN/m2"}, {23, F, L, N, L"kN", L"cm", L"", 1e9, L"kN/cm3"},
    {17, A, N, N, L"Deg", L"", L"", 0.01745329251994, L"Deg"},
    {19, M, N, N, L"t", L"", L"", 1000.0, L"t"}, {26, M, L, N, L"kg", L"cm", L"", 1e6, L"kg/cm3"},
    {32, M, L, N, L"lb", L"ft", L"", 0.4535925112041 / (0.3048 * 0.3048), L"lb/ft2"}};
// clang-format on

TEST_F(CatalogueTest, EverySingleTypeDerivesItsFactorAndName) {
    MUnit mu;
    for (const TypeRule& r : kRules) {
        MUNIT_T k1, k2, k3;
        ASSERT_EQ(MUnit::GetTypeMunit(T(r.id), k1, k2, k3), 0) << r.id;
        EXPECT_TRUE(k1 == r.k1 && k2 == r.k2 && k3 == r.k3) << r.id;
        ASSERT_EQ(mu.SetTypeUnit(T(r.id), 3, r.u1, r.u2, r.u3, false, L"note"), 0) << r.id;
    }
    // 25 and 5 keep what they were given; 6 is not created.
    TypeUnit kept{T(25), L, N, N, L"m", L"", L"", 0, false, L"", 7.5, L"stays"};
    ASSERT_EQ(mu.SetTypeUnit(kept), 0);
    kept.id = T(5);
    ASSERT_EQ(mu.SetTypeUnit(kept), 0);

    ASSERT_EQ(mu.UpDateUnit(), 0);
    for (const TypeRule& r : kRules) {
        const TypeUnit t = mu.GetTypeUnit(T(r.id));
        EXPECT_DOUBLE_EQ(t.coefficient, r.coefficient) << r.id;
        EXPECT_TRUE(t.fullName == r.name && t.precision == 3 && t.extraText == L"note") << r.id;
    }
    EXPECT_TRUE(mu.GetTypeUnit(T(25)).coefficient == 7.5 &&
                mu.GetTypeUnit(T(5)).fullName == L"stays");
    EXPECT_EQ(mu.GetTypeUnit(T(6)).id, -1);
    // The unitless types are created, and forced back when present: factor 1, no decimals for
    // 1-3, two for 4; a second run changes nothing more.
    TypeUnit one = mu.GetTypeUnit(T(1));
    one.precision = 5;
    one.coefficient = 3.0;
    ASSERT_EQ(mu.ModifyTypeUnit(one), 0);
    const std::size_t size = table_.size();
    ASSERT_EQ(mu.UpDateUnit(), 0);
    EXPECT_EQ(table_.size(), size);
    for (int id = 1; id <= 4; ++id) {
        const TypeUnit t = mu.GetTypeUnit(T(id));
        EXPECT_TRUE(t.id == id && t.coefficient == 1.0 && t.precision == (id == 4 ? 2 : 0) &&
                    !t.exponential && mu.GetFullNameUnit(T(id), true).empty())
            << id;
    }
}

TEST_F(CatalogueTest, AddAndModifyRules) {
    MUnit mu;
    TypeUnit composite;
    composite.id = T(102);
    EXPECT_TRUE(mu.SetTypeUnit(composite) == 1 && mu.ModifyTypeUnit(composite) == 1);
    EXPECT_EQ(mu.SetTypeUnit(T(101), 2, L"kg", L"m", L"", false), 1);
    EXPECT_EQ(mu.SetTypeUnit(T(35), 2, L"m", L"", L"", false), 1);
    EXPECT_EQ(mu.ModifyTypeUnit(T(7), 2, L"m", L"", L"", false), 1);  // absent
    TypeUnit missing;
    missing.precision = 9;
    EXPECT_TRUE(mu.GetTypeUnit(T(7), missing) == 1 && missing == TypeUnit{});

    ASSERT_EQ(mu.SetTypeUnit(T(7), 2, L"m", L"", L"", false, L"a"), 0);
    EXPECT_EQ(mu.SetTypeUnit(T(7), 4, L"cm", L"", L"", false), 1);  // present already
    EXPECT_EQ(mu.ModifyTypeUnit(T(7), 4, L"cm", L"", L"", true, L"b"), 0);
    EXPECT_EQ(mu.ModifyTypeUnit(T(7), 4, L"kN", L"", L"", true), 1);  // not a length
    EXPECT_EQ(mu.GetTypeUnit(T(7)),
              (TypeUnit{T(7), L, N, N, L"cm", L"", L"", 4, true, L"b", 0, L""}));
    // The kinds of a record must suit its id.
    for (const auto& [k1, k2, code] : {std::tuple{F, F, 1}, {L, L, 1}, {F, L, 0}})
        EXPECT_EQ(mu.SetTypeUnit({T(14), k1, k2, N, L"kN", L"m", L"", 2, false, L"", 0, L""}),
                  code);
}

TEST_F(CatalogueTest, CorrectQuantityValidatesOnlyTheFirstUnit) {
    MUnit mu;
    EXPECT_EQ(mu.SetTypeUnit(T(14), 2, L"kN", L"furlong", L"", false), 0);
    EXPECT_EQ(mu.SetTypeUnit(T(28), 2, L"kN", L"furlong", L"", false), 0);
    EXPECT_EQ(mu.SetTypeUnit(T(15), 2, L"kilonewton", L"m", L"", false), 1);
    EXPECT_EQ(mu.CorrectQuantity(T(33), L, L, L, L"m", L"x", L"y"), M_SUCCESS);
    EXPECT_EQ(mu.CorrectQuantity(T(7), L, N, N, L"M", L"", L""), M_FAILURE);
    EXPECT_EQ(mu.CorrectQuantity(T(3), N, N, N, L"anything", L"", L""), M_SUCCESS);
    EXPECT_EQ(mu.CorrectQuantity(T(35), L, N, N, L"m", L"", L""), M_FAILURE);
    // The loose second unit converts with factor 0 (check on), so the moment factor is 0. A single
    // type divides by it unguarded (only composite types keep their old factor): the force per
    // length becomes infinite, and a value from SI shows as 0.
    ASSERT_EQ(mu.UpDateUnit(), 0);
    EXPECT_TRUE(mu.GetTypeUnit(T(14)).coefficient == 0.0 &&
                mu.GetTypeUnit(T(14)).fullName == L"kN*furlong");
    EXPECT_EQ(mu.GetTypeUnit(T(28)).coefficient, std::numeric_limits<double>::infinity());
    double out = -1.0;
    EXPECT_TRUE(mu.CnvUnitSI(out, T(28), 5.0, BASIC_FROM_SI) == 0 && out == 0.0);
}

TEST_F(CatalogueTest, TypeTwentyCanNeverBeAddedWhileChecking) {
    MUnit mu;
    for (const wchar_t* unit : {L"m", L"", L"Hz"})
        EXPECT_EQ(mu.SetTypeUnit(T(20), 2, unit, L"", L"", false), 1);
    GetMInit()->SetCorrectQuantity(false);
    ASSERT_EQ(mu.SetTypeUnit(T(20), 2, L"Hz", L"", L"", false), 0);
    ASSERT_EQ(mu.UpDateUnit(), 0);
    const TypeUnit t = mu.GetTypeUnit(T(20));
    EXPECT_TRUE(t.coefficient == 0.0 && t.fullName == L"Hz");  // the fifth kind has no factors
    GetMInit()->SetCorrectQuantity(true);
    EXPECT_EQ(mu.ModifyTypeUnit(T(20), 3, L"Hz", L"", L"", false), 1);
}

TEST_F(CatalogueTest, RecordFormAddSkipsTheTypeCheckButModifyDoesNot) {
    GetMInit()->SetCorrectQuantity(false);
    MUnit mu;
    TypeUnit odd{T(40), N, N, N, L"m", L"", L"", 1, false, L"", 0.0, L""};
    EXPECT_EQ(mu.SetTypeUnit(odd), 0);
    odd.precision = 2;
    EXPECT_EQ(mu.ModifyTypeUnit(odd), 1);
    EXPECT_EQ(mu.GetTypeUnit(T(40)).precision, 1);
    EXPECT_EQ(mu.SetTypeUnit(T(40), 2, L"m", L"", L"", false), 1);
}

// Composite types live only in an installed table; UpDateUnit refreshes them from their sources.
TEST_F(CatalogueTest, CompositeTypesFromAnInstalledTable) {
    MUnit mu;
    const std::pair<int, const wchar_t*> sources[] = {{7, L"cm"},   {9, L"mm"},  {13, L"kN"},
                                                      {17, L"Deg"}, {18, L"MN"}, {19, L"kg"}};
    for (const auto& [id, unit] : sources)
        ASSERT_EQ(mu.SetTypeUnit(T(id), 2, unit, L"", L"", false), 0);
    ASSERT_EQ(mu.SetTypeUnit(T(14), 2, L"kN", L"m", L"", false), 0);
    for (int id = 101; id <= 115; ++id)
        table_.push_back({T(id), N, N, N, L"", L"", L"", 0, false, L"", 42.0, L"old"});
    // Types 101 to 115 in turn.
    const std::pair<double, const wchar_t*> expected[] = {
        {42.0, L"kg*cm2"},   {1e5, L"kN*m/cm"}, {42.0, L"old"},    {42.0, L"old"},
        {42.0, L"kN*m/Deg"}, {42.0, L"cm2"},    {42.0, L"cm3"},    {42.0, L"mm2"},
        {42.0, L"mm3"},      {42.0, L"mm4"},    {42.0, L"MN/mm3"}, {1e5, L"kN/cm"},
        {1e7, L"kN/cm2"},    {1e6, L"kg/cm3"},  {1e9, L"kN/cm3"}};
    // Then a length without a factor leaves the divided coefficients as they were.
    GetMInit()->SetUnit(L, {L"void", 0.0});
    for (const wchar_t* length : {L"cm", L"void"}) {
        ASSERT_EQ(mu.ModifyTypeUnit(T(7), 2, length, L"", L"", false), 0);
        ASSERT_EQ(mu.UpDateUnit(), 0);
        for (int id = 101; id <= 115; ++id) {
            const TypeUnit t = mu.GetTypeUnit(T(id));
            EXPECT_DOUBLE_EQ(t.coefficient, expected[id - 101].first) << id;
            EXPECT_TRUE(*length == L'v' || t.fullName == expected[id - 101].second) << id;
        }
        EXPECT_EQ(mu.GetTypeUnit(T(112)).fullName, std::wstring(L"kN/") + length);
    }
    EXPECT_EQ(mu.ModifyTypeUnit(mu.GetTypeUnit(T(112))), 1);
    // Without both sources a composite is left alone.
    std::erase_if(table_, [](const TypeUnit& t) { return t.id == 13; });
    for (TypeUnit& t : table_) t.fullName = t.id == 112 ? L"mine" : t.fullName;
    ASSERT_EQ(mu.UpDateUnit(), 0);
    EXPECT_EQ(mu.GetTypeUnit(T(112)).fullName, L"mine");
}

// Fills a dictionary of at most three entries from key and translation pairs.
int SetDictionary(UNITDIC_TYPE type,
                  std::initializer_list<std::pair<std::wstring, std::wstring>> e) {
    static UNITDIC_ENTRY entries[8][4];  // the library keeps the pointer
    UNITDIC_ENTRY* d = entries[static_cast<unsigned>(type) % 8];
    std::fill_n(d, 4, UNITDIC_ENTRY{});
    int i = 0;
    for (const auto& [key, translation] : e) {
        std::wmemcpy(d[i].key, key.c_str(), std::min<std::size_t>(key.size(), UNITDIC_FIELD));
        std::wcscpy(d[i++].translation, translation.c_str());
    }
    return UNITDIC_SetDictionary(type, d);
}

TEST_F(CatalogueTest, NamesPassThroughTheDictionaries) {
    MUnit mu;
    ASSERT_EQ(mu.SetTypeUnit(T(15), 1, L"kN", L"m", L"", false), 0);
    ASSERT_EQ(mu.SetTypeUnit(T(13), 1, L"kN", L"", L"", false), 0);
    // The first entry decides; only the dictionary of the unit's own kind is asked.
    ASSERT_EQ(SetDictionary(UNITDIC_FORCE, {{L"kN", L"\x043A\x041D"}, {L"kN", L"second"}}), 0);
    ASSERT_EQ(SetDictionary(UNITDIC_FULLNAME, {{L"\x043A\x041D/m2", L"\x043A\x041D/\x043C\x00B2"}}),
              0);
    ASSERT_EQ(mu.UpDateUnit(), 0);
    EXPECT_EQ(mu.GetFullNameUnit(T(15), false), L"\x043A\x041D/\x043C\x00B2");
    EXPECT_EQ(mu.GetFullNameUnit(T(13), false), L"\x043A\x041D");
    for (int type : {int{UNITDIC_LENGTH}, -1, 7})
        EXPECT_EQ(UNITDIC_GetUnitNameTrans(static_cast<UNITDIC_TYPE>(type), L"kN"), L"kN") << type;
    EXPECT_EQ(UNITDIC_GetUnitNameTrans(UNITDIC_FORCE, nullptr), L"");
    EXPECT_EQ(SetDictionary(static_cast<UNITDIC_TYPE>(7), {}), 1);

    // An empty translation gives the name itself; the entries after it still count.
    ASSERT_EQ(SetDictionary(UNITDIC_LENGTH, {{L"m", L""}, {L"mm", L"millimetre"}}), 0);
    EXPECT_EQ(UNITDIC_GetUnitNameTrans(UNITDIC_LENGTH, L"m"), L"m");
    EXPECT_EQ(UNITDIC_GetUnitNameTrans(UNITDIC_LENGTH, L"mm"), L"millimetre");
    // A key that fills its field has no terminator: it ends where its translation begins.
    const std::wstring full(UNITDIC_FIELD, L'k');
    ASSERT_EQ(SetDictionary(UNITDIC_MASS, {{full, L"long"}}), 0);
    EXPECT_EQ(UNITDIC_GetUnitNameTrans(UNITDIC_MASS, full.c_str()), L"long");

    // The names block and its brackets.
    UNITDIC_UNITSNAMES* block = UNITDIC_UnitsNames();
    std::wcscpy(block->openBracket, L"[");
    std::wcscpy(block->closeBracket, L"]");
    EXPECT_EQ(mu.GetFullNameUnit(T(13), true) + mu.GetFullNameUnit(T(7), true), L"[\x043A\x041D]");
    UNITDIC_Init();
    EXPECT_EQ(UNITDIC_GetUnitNameTrans(UNITDIC_FORCE, L"kN"), L"kN");
    EXPECT_EQ(mu.GetFullNameUnit(T(13), true), L"(\x043A\x041D)");  // the stored name stays
    EXPECT_EQ(std::wstring(block->names[0]) + block->names[UNITDIC_NAMES - 1] + block->openBracket +
                  block->closeBracket,
              L"mHz()");
}

}  // namespace
}  // namespace quillon::munit::testing
