// Test fixture for the unit catalogue: every test gets a fresh catalogue (check on), an empty
// installed type table, "." as the decimal separator and no dictionaries; the process-wide state
// in effect before is put back afterwards.
#pragma once

#include <gtest/gtest.h>

#include "quillon/platform/locale.h"
#include "quillon/units/munit.h"

namespace quillon::munit::testing {

class MUnitFixture : public ::testing::Test {
protected:
    void SetUp() override {
        savedInit_ = GetMInit();
        SetMInit(nullptr);
        ASSERT_EQ(InitMInit(true), 0);
        savedTable_ = SetGlobU(&table_);
        UNITDIC_Init();
        SetDecimal(L".");
    }

    void TearDown() override {
        DeleteMInit();
        SetMInit(savedInit_);
        SetGlobU(savedTable_);
        UNITDIC_Init();
        platform::ClearLocaleOverride();
    }

    static void SetDecimal(const std::wstring& decimal) {
        platform::LocaleTexts texts;
        texts.decimal = decimal;
        texts.monetaryDecimal = decimal;
        platform::SetLocaleOverride(texts);
    }

    static MUNIT_TYPES T(int id) { return static_cast<MUNIT_TYPES>(id); }

    TypeUnitTable table_;

private:
    MInitUnit* savedInit_ = nullptr;
    TypeUnitTable* savedTable_ = nullptr;
};

}  // namespace quillon::munit::testing
