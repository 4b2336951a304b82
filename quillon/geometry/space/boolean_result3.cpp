#include "quillon/geometry/space/boolean_result3.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "quillon/geometry/space/detail/item_archive.h"
#include "quillon/geometry/space/item3_factory.h"

namespace quillon {

namespace {

constexpr std::int32_t kBooleanVersion = 1;

std::unique_ptr<GeometricItem3> CloneOf(const GeometricItem3* item) {
    return std::unique_ptr<GeometricItem3>(item != nullptr ? item->Clone() : nullptr);
}

}  // namespace

BooleanResult3::BooleanResult3() : CachedItem3(-1.0) {}

BooleanResult3::BooleanResult3(const BooleanResult3& o)
    : CachedItem3(o),
      oper(o.oper),
      first(CloneOf(o.first.get())),
      second(CloneOf(o.second.get())) {}

BooleanResult3& BooleanResult3::operator=(const BooleanResult3& o) {
    if (this != &o) {
        BooleanResult3 copy(o);
        *this = std::move(copy);
    }
    return *this;
}

BooleanResult3::BooleanResult3(BooleanResult3&&) noexcept = default;
BooleanResult3& BooleanResult3::operator=(BooleanResult3&&) noexcept = default;
BooleanResult3::~BooleanResult3() = default;

const Solid3& BooleanResult3::GetSolid() const {
    static const Solid3 empty(1.1920928955078125e-7);
    if (!first) return empty;
    if (oper != BOOL_SUBTRACT && oper != BOOL_UNION) return first->GetSolid();
    if (Cached() || !second) return solid;
    const Solid3& a = first->GetSolid();
    const Solid3& b = second->GetSolid();
    solid = Solid3(std::max(a.GetEps(), b.GetEps()));
    const bool ok = oper == BOOL_SUBTRACT ? BoolSubstract(a, b, solid, nullptr) : [&] {
        Solid3Inter inter(a, b);
        return inter.MakeInterData() && inter.BoolOper(BOOL_UNION, solid);
    }();
    if (!ok) solid.Clear();
    return solid;
}

void BooleanResult3::SetOperator(EBOOL_OPER op) {
    Invalidate();
    oper = op;
}

void BooleanResult3::SetFirstOperand(const GeometricItem3* item) {
    Invalidate();
    first = CloneOf(item);
}

void BooleanResult3::SetSecondOperand(const GeometricItem3* item) {
    Invalidate();
    second = CloneOf(item);
}

void BooleanResult3::Reset() {
    Invalidate();
    oper = BOOL_SUBTRACT;
    first.reset();
    second.reset();
}

BooleanResult3& BooleanResult3::operator<<=(const Isometry3& iso) {
    if (first) *first <<= iso;
    if (second) *second <<= iso;
    if (valid) solid <<= iso;
    return *this;
}

std::unique_ptr<GeometricItem3> BooleanResult3::LoadOperand(Archive& ar, int depth) {
    std::int32_t id = 0;  // mutate: off (read at once)
    ar >> id;
    if (id == 0) return nullptr;
    if (id == BOOLEAN_RESULT3) {
        auto nested = std::make_unique<BooleanResult3>();
        nested->Load(ar, depth + 1);
        return nested;
    }
    std::unique_ptr<GeometricItem3> item(InstantiateClass(static_cast<E_TYPEID>(id), -1.0));
    if (!item) throw ArchiveException(ArchiveException::badClass, "unknown item type");
    item->Serialize(ar);
    return item;
}

void BooleanResult3::Load(Archive& ar, int depth) {
    if (depth > kMaxLoadDepth) {
        throw ArchiveException(ArchiveException::badSchema, "boolean results nested too deep");
    }
    detail::LoadVersion(ar, kBooleanVersion);
    std::int32_t op = 0;
    ar >> op;
    std::unique_ptr<GeometricItem3> a = LoadOperand(ar, depth);
    std::unique_ptr<GeometricItem3> b = LoadOperand(ar, depth);
    Invalidate();
    oper = static_cast<EBOOL_OPER>(op);
    first = std::move(a);
    second = std::move(b);
}

void BooleanResult3::Serialize(Archive& ar) {
    if (ar.IsStoring()) {
        detail::StoreVersion(ar, kBooleanVersion);
        ar << static_cast<std::int32_t>(oper);
        StoreGeometricItem3(ar, first.get());
        StoreGeometricItem3(ar, second.get());
        return;
    }
    Load(ar, 0);
}

}  // namespace quillon
