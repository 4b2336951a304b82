// BooleanResult3: an item that combines two other items by a solid boolean.
//
// The result owns copies of its operands: SetFirstOperand and SetSecondOperand store a Clone of
// what they are given (null for none) and delete the operand they replace; copying a result
// copies its operands. GetSolid computes, on its first call after a change:
//   - no first operand: a shared empty solid (eps 1.1920928955078125e-7);
//   - operator 1 (subtraction): BoolSubstract(first solid, second solid);
//   - operator 2 (union): Solid3Inter of the two solids, MakeInterData, BoolOper(union);
//   - any other operator (0, intersection and all pieces included): the first operand's solid
//     itself, unchanged.
// For operators 1 and 2 the result is empty when the second operand is missing or the boolean
// fails (never a partial or open solid); it has the larger of the two operand solids' eps. The
// cache is marked valid before the boolean runs, deliberately: a failed boolean is not retried
// until an operand or the operator changes (every setter clears the cache).
//
// Moving (operator<<=) moves both operands; a result already computed is moved with them and
// stays valid (a rigid motion changes no boolean), so moving a model does not redo its booleans.
//
// Archive record (Serialize): version (int32, 1), the operator (int32, any value), then each
// operand, first then second, as its type id (int32: GeometricItem3::E_TYPEID, 0 for a missing
// operand) followed by that kind's own record. Loading re-creates the operands through
// InstantiateClass and fails by ArchiveException only, leaving the result as it was: badSchema
// for another version or results nested deeper than kMaxLoadDepth (a crafted archive must not
// exhaust the stack), badClass for an unknown type id, and whatever an operand's record raises.
#pragma once

#include <memory>

#include "quillon/geometry/space/cached_item3.h"
#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/solid3_inter.h"

namespace quillon {

class BooleanResult3 : public CachedItem3 {
public:
    // Results nested inside a loaded result, at most.
    static constexpr int kMaxLoadDepth = 256;

    // Subtraction, no operands.
    BooleanResult3();
    BooleanResult3(const BooleanResult3& o);
    BooleanResult3& operator=(const BooleanResult3& o);
    BooleanResult3(BooleanResult3&&) noexcept;
    BooleanResult3& operator=(BooleanResult3&&) noexcept;
    ~BooleanResult3() override;

    BooleanResult3* Clone() const override { return new BooleanResult3(*this); }
    const Solid3& GetSolid() const override;
    E_TYPEID GetTypeID() const override { return BOOLEAN_RESULT3; }
    void Serialize(Archive& ar) override;
    BooleanResult3& operator<<=(const Isometry3& iso) override;

    void SetOperator(EBOOL_OPER op);
    EBOOL_OPER GetOperator() const { return oper; }
    // Stores a copy of `item` (null: no operand), deleting the previous operand.
    void SetFirstOperand(const GeometricItem3* item);
    void SetSecondOperand(const GeometricItem3* item);
    // The operands, owned by the result (null when missing).
    const GeometricItem3* GetFirstOperand() const { return first.get(); }
    const GeometricItem3* GetSecondOperand() const { return second.get(); }
    // Subtraction, no operands.
    void Reset();

private:
    void Load(Archive& ar, int depth);
    static std::unique_ptr<GeometricItem3> LoadOperand(Archive& ar, int depth);

    EBOOL_OPER oper = BOOL_SUBTRACT;
    std::unique_ptr<GeometricItem3> first;
    std::unique_ptr<GeometricItem3> second;
};

}  // namespace quillon
